// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// asConst: a container as a constant one, so that iterating over it does not detach it.

#ifndef ORVAUTILS_ASCONST_P_H
#define ORVAUTILS_ASCONST_P_H

namespace OrvaUtilsPrivate {

/// \a container as a constant. Qt's containers share their data; a range-based for loop over one
/// that is not constant copies the data first where they are shared.
template <typename Container>
constexpr const Container& asConst(Container& container)
{
    return container;
}

/// A temporary would be gone before the loop begins.
template <typename Container>
void asConst(const Container&&) = delete;

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ASCONST_P_H
