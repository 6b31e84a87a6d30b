#pragma once

#include "registry/childrencache.h"
#include "registry/viewkey.h"

#include <QtCore/QHash>
#include <QtCore/QVector>

/// Finds the number of a node by its key, and where its parent's listing holds it, so that neither costs a scan.
class NodeIndex {
public:
    /// A place in a listing that the view's cache keeps; without a listing, not known yet.
    struct Place {
        const Children *listing = nullptr;
        Children::const_iterator entry;
    };

    /// The number of @p key. A key that has none yet gets the next.
    int numberOf(const QString &key) {
        int &count = numbers[key];
        if (count == 0) {
            places.append(Place());
            count = places.size();
        }
        return count - 1;
    }

    const Place &place(int number) const { return places.at(number); }
    void setPlace(int number, const Place &place) { places[number] = place; }

private:
    QHash<QString, int> numbers; // plus 1
    QVector<Place> places;
};
