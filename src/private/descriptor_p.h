// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Descriptor: an open file for use with system calls.

#ifndef ORVAUTILS_DESCRIPTOR_P_H
#define ORVAUTILS_DESCRIPTOR_P_H

#include <QtGlobal>

#include <unistd.h>

namespace OrvaUtilsPrivate {

/// A file descriptor that is closed when it goes out of scope.
class Descriptor
{
public:
    explicit Descriptor(int descriptor)
        : mDescriptor(descriptor)
    { }
    ~Descriptor() { close(); }

    bool isOpen() const { return mDescriptor >= 0; }
    // NOLINTNEXTLINE(google-explicit-constructor): passed to system calls
    operator int() const { return mDescriptor; }

    /// False when the system could not store what was written.
    bool close()
    {
        const int descriptor = mDescriptor;
        mDescriptor = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    Q_DISABLE_COPY(Descriptor)

    int mDescriptor;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_DESCRIPTOR_P_H
