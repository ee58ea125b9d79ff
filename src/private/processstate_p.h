// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// processState: objects that are created on first use and live until the process ends.
//
//     Identity& identity() { return processState<Identity>(); }
//
//     const QRegularExpression& rx = processConstant([] { return webAddress(QString()); });

#ifndef ORVAUTILS_PROCESSSTATE_P_H
#define ORVAUTILS_PROCESSSTATE_P_H

namespace OrvaUtilsPrivate {

/// The only object of the type \a T, created by the first call; other threads that call in the
/// meantime wait for it.
///
/// It is never destroyed, so that static objects of the host may use the library in their
/// constructors and destructors, in whatever order these run. A type serves one purpose only: give
/// each state a type of its own.
template <typename T>
T& processState()
{
    static T& state = *new T;
    return state;
}

/// What \a make returned to the first call of processConstant() from this place in the source, with
/// the same guarantees as for processState(). Every lambda expression is a type of its own, and
/// therefore has a constant of its own.
template <typename Make>
const auto& processConstant(Make make)
{
    static const auto& constant = *new auto(make());
    return constant;
}

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_PROCESSSTATE_P_H
