// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// asConst: returns a container as const, so that iterating over it does not detach it.

#ifndef ORVAUTILS_ASCONST_P_H
#define ORVAUTILS_ASCONST_P_H

namespace OrvaUtilsPrivate {

/// \a container as const. Qt's containers are implicitly shared; a range-based for loop over one
/// that is not const first copies the data if they are shared.
template <typename Container>
constexpr const Container& asConst(Container& container)
{
    return container;
}

/// A temporary would be destroyed before the loop begins.
template <typename Container>
void asConst(const Container&&) = delete;

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ASCONST_P_H
