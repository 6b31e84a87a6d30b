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

    /// The number of @p key, or -1.
    int numberOf(const QString &key) const { return numbers.value(key, -1); }

    void append(const QString &key) {
        numbers.insert(key, places.size());
        places.append(Place());
    }

    const Place &place(int number) const { return places.at(number); }
    void setPlace(int number, const Place &place) { places[number] = place; }

private:
    QHash<QString, int> numbers;
    QVector<Place> places;
};
