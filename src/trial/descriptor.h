// SPDX-License-Identifier: MIT
/// A file descriptor with an owner.
#pragma once

#include <unistd.h>
#include <utility>

namespace quendar {

/// Closes it at the end.
class Descriptor {
public:
    /// Takes over @p opened, what `open` has returned.
    explicit Descriptor(int opened = -1) : descriptor(opened) {}
    ~Descriptor() { close(); }
    Descriptor(Descriptor &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept {
        std::swap(descriptor, other.descriptor);
        return *this;
    }

    bool isOpen() const { return descriptor >= 0; }
    int number() const { return descriptor; }
    void close() {
        if (isOpen())
            ::close(std::exchange(descriptor, -1));
    }

private:
    int descriptor;
};

} // namespace quendar
