#pragma once

#include "registry/childrencache.h"
#include "registry/viewkey.h"

#include <QtCore/QHash>
#include <QtCore/QVector>

/// Numbers the keys in the order in which they are met, and remembers where a key's parent lists it, so that neither
/// costs a scan.
class NodeIndex {
public:
    /// A place in a listing that the view's cache keeps; without a listing, not known yet.
    struct Place {
        const Children *listing = nullptr;
        Children::const_iterator entry;
    };

    /// The number of @p key. A key that has none yet gets the next.
    int numberFor(const QString &key) {
        int &keysUpToIt = numbers[key];
        if (keysUpToIt == 0) {
            places.append(Place());
            keysUpToIt = places.size();
        }
        return keysUpToIt - 1;
    }

    const Place &place(int number) const { return places.at(number); }
    void setPlace(int number, const Place &place) { places[number] = place; }

private:
    QHash<QString, int> numbers; // from 1 on
    QVector<Place> places;
};
