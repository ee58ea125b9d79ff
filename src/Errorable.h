// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Errorable: errors that travel up a tree of objects, and are cleared as a whole.

#ifndef ORVAUTILS_ERRORABLE_H
#define ORVAUTILS_ERRORABLE_H

#include "ErrorableCode.h"
#include "orvautils_export.h"

#include <QMap>
#include <QStringList>
#include <QVector>

#include <memory>

namespace OrvaUtilsPrivate {
class ErrorablePrivate;
} // namespace OrvaUtilsPrivate

/// Registers \a child (an Errorable&) as a child of this object, together with the source file and
/// line of the call:
///
/// \code
/// ORVAUTILS_ADD_ERRORABLE_CHILD(mCopier); // in a member function of the parent
/// document.ORVAUTILS_ADD_ERRORABLE_CHILD(copier); // or on an object
/// \endcode
///
/// \relates Errorable
#define ORVAUTILS_ADD_ERRORABLE_CHILD(child) _addErrorableChild((child), __FILE__, __LINE__)

/// Raises \a code (an ErrorableCode, which is copied) on this object, together with the source file
/// and line of the call: they are appended to the steps that the code already has, before those of
/// the tree. Used like ORVAUTILS_ADD_ERRORABLE_CHILD.
///
/// \relates Errorable
#define ORVAUTILS_SET_ERROR(code) _setError(Errorable::raisedAt((code), __FILE__, __LINE__))

/// A base class, in addition to QObject, for objects that may own an error.
///
/// Errorable objects form a tree of their own, independent of QObject's parents: an object
/// registers others as its children, and an error that is raised on one of them travels upward
/// through every ancestor. Each keeps a copy, with the steps that the error took.
///
/// \code
/// class Document : public QObject, public Errorable
/// {
/// public:
///     Document() { ORVAUTILS_ADD_ERRORABLE_CHILD(mCopier); }
///
///     bool save()
///     {
///         mCopier.copyAll(); // calls ORVAUTILS_SET_ERROR(copyFailed) when it fails
///         return !error().isValid(); // sees that error, too
///     }
///
/// private:
///     Copier mCopier; // also a QObject and an Errorable
/// };
/// \endcode
///
/// The two macros of this header, ORVAUTILS_ADD_ERRORABLE_CHILD and ORVAUTILS_SET_ERROR, pass file
/// and line; hosts use them rather than _addErrorableChild() and _setError(). docs/errors.md shows
/// a whole tree and the resulting text.
///
/// \par Lifetime
/// The links of the tree do not own: an object counts as absent as soon as its Errorable or its
/// QObject part has been destroyed. This is also true during destruction, when a QWidget deletes
/// its children after its own Errorable part has been destroyed: a child that raises or clears an
/// error then does so as a root. An object whose parent has been destroyed is a root from then on.
/// An object must not be registered below itself, at any level; this is not checked.
///
/// \par Threads
/// Everything here belongs to the one thread that owns the objects of the tree; nothing is locked.
/// The message tables are filled before errors are looked up; static initialisers of the host may
/// do so.
class ORVAUTILS_EXPORT Errorable
{
public:
    /// A root without children and without errors.
    Errorable();

    /// Only releases the members: the object is not removed from its parent's list, and its
    /// children are not affected.
    virtual ~Errorable();

    /// The message of each error, filled by the host. The keys are compared by
    /// ErrorableCode::operator<, which describes which of them are equivalent.
    ///
    /// Both tables last as long as the process: they may be filled from static initialisers of any
    /// source that includes this header, and read in destructors of static objects.
    static QMap<ErrorableCode, QString>& sErrorMessages;

    /// Messages that take precedence over those of sErrorMessages, also filled by the host.
    static QMap<ErrorableCode, QString>& sOverriddenErrorMessage;

    /// Registers \a child as a child of this object, with \a file and \a line as the place in the
    /// source; a null \a file counts as empty. Use ORVAUTILS_ADD_ERRORABLE_CHILD.
    ///
    /// A child that is registered again, here or elsewhere, gets the new parent and the new place,
    /// and stays in the old parent's list (or appears twice in this one). A parent that is not a
    /// QObject makes the child a root.
    ///
    /// A child that is not a QObject is not registered; that is logged with LogType 4, as "###Try
    /// to had Errorable that is not QObject!!###".
    void _addErrorableChild(Errorable& child, const char* file, int line);

    /// Raises an error on this object and hands it to all ancestors. Use ORVAUTILS_SET_ERROR. The
    /// code is taken as it is, even the no-error value.
    ///
    /// The first error wins: while this object is in error, any further one is dropped, which is
    /// logged with LogType 4, as "###Deja une erreur de declenchee, merci de mieux gerez
    /// l'interruption du parent". Errors that came up from children do not count here.
    void _setError(const ErrorableCode& code);

    /// Carries \a code upward and keeps a copy of it in the stack of this object and of each
    /// ancestor. On the way it collects the steps: the place where this object was registered, then
    /// that of each ancestor below the root; then, followed by " (NE)", the class names of the
    /// QObjects that own the root, the nearest first. Every object keeps the same, complete value.
    ///
    /// The own error of this object is not changed by this call.
    void propagateError(ErrorableCode& code);

    /// Whether an error was raised on this object itself. Errors of its children do not count.
    bool hasErrorSelfError() const;

    /// The error of this object if there is one, otherwise the newest that reached it from its
    /// children, otherwise the no-error value.
    ErrorableCode error() const;

    /// Every error that reached this object since it was last cleared, its own included, newest
    /// first.
    QVector<ErrorableCode> errorStack() const;

    /// The contents of errorStack() as lines for a log or a details window: for each error, newest
    /// first, its message, followed by one line for each step, indented by two spaces.
    ///
    /// \code
    /// qWarning().noquote() << document.errorLines().join(QLatin1Char('\n'));
    /// // The photograph could not be copied. (beach.jpg)
    /// //   copier.cpp:12
    /// //   document.cpp:40
    /// //   QMainWindow (NE)
    /// \endcode
    ///
    /// The message is overriddenErrorMessage(), followed by the details in brackets unless it
    /// contains them already. A text of several lines gives several elements. Empty without an
    /// error.
    QStringList errorLines() const;

    /// The message of error().
    QString errorMessage() const;

    /// The text in sErrorMessages for \a code; if there is none, its enum text; if that is empty,
    /// toString(false).
    static QString errorMessage(const ErrorableCode& code);

    /// The text in sOverriddenErrorMessage for \a code, otherwise errorMessage(code).
    static QString overriddenErrorMessage(const ErrorableCode& code);

    /// Clears every error of this object, of all its ancestors and of all its descendants.
    ///
    /// Deliberately one-sided: the ancestors also lose the errors that came to them from other
    /// branches, while those branches keep their own.
    void clearError();

    /// A copy of \a code with a further step, the text "file:line" made of \a file and \a line;
    /// a null \a file counts as empty. This is what ORVAUTILS_SET_ERROR raises.
    static ErrorableCode raisedAt(const ErrorableCode& code, const char* file, int line);

    /// \cond INTERNAL
    /// The first instance creates the two tables. Each source file that includes this header has an
    /// instance, so that the tables exist before the static initialisers of that file.
    struct ORVAUTILS_EXPORT MessageTables
    {
        MessageTables();
    };
    /// \endcond

private:
    Q_DISABLE_COPY(Errorable)

    void clearSelfErrorPrivate();
    void clearParentsErrorPrivate();
    void clearChildrenErrorPrivate();

    // Shared only so that the links of other objects can refer to it weakly.
    const std::shared_ptr<OrvaUtilsPrivate::ErrorablePrivate> d;
};

// clazy:excludeall=non-pod-global-static
namespace OrvaUtilsPrivate {
static const Errorable::MessageTables errorMessageTables;
} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_ERRORABLE_H
