// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// KeyPressCheatCodeDetection: tells when the user has typed a secret word into a window, without
// taking a single key from the window.

#ifndef ORVAUTILS_KEYPRESSCHEATCODEDETECTION_H
#define ORVAUTILS_KEYPRESSCHEATCODEDETECTION_H

#include "orvautils_export.h"

#include <QObject>
#include <QString>

#include <memory>

class QKeyEvent;

namespace OrvaUtilsPrivate {
class KeyPressCheatCodeDetectionPrivate;
} // namespace OrvaUtilsPrivate

/// Watches the key presses of one object and emits keyDetected() when a sequence of characters was
/// typed.
///
/// \code
/// auto* detection = new KeyPressCheatCodeDetection(mainWindow);
/// detection->setKey(QStringLiteral("diagnostics"));
/// connect(detection, &KeyPressCheatCodeDetection::keyDetected, this, &Shop::showDiagnostics);
/// \endcode
///
/// The sequence always comes from the caller; the class holds none of its own, and with an empty
/// one nothing is ever emitted. Thread: the GUI thread. Nothing is logged.
class ORVAUTILS_EXPORT KeyPressCheatCodeDetection : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of \a target, dies with it, and installs itself as its event filter. The
    /// sequence is empty. \a target must not be null; this is not checked.
    explicit KeyPressCheatCodeDetection(QObject* target);
    /// Ends the detection.
    ~KeyPressCheatCodeDetection() override;

    /// Sets the sequence to detect; what was typed so far is forgotten.
    void setKey(const QString& key);

    /// Passes \a event to keyPressEvent() where it is a key press and \a watched the parent. Always
    /// answers false, so that the application still receives every key; events of other objects are
    /// ignored.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Takes one key press into account. Only an event whose text is exactly one character counts,
    /// every other (Shift alone, a dead key, text of an input method) changes nothing.
    ///
    /// The character is compared without regard to case with the next one of the sequence. If it is
    /// the same, the detection moves on, and after the last character emits keyDetected() and
    /// starts again. If it differs, the detection starts again with the next key: the differing
    /// character itself is deliberately not tried as the first of a new match, so that "aab" typed
    /// for the sequence "ab" detects nothing.
    void keyPressEvent(QKeyEvent* event);

Q_SIGNALS:
    /// The whole sequence was typed. A slot may delete the detection or give it another sequence.
    /// It must not delete the watched object, to which Qt is still delivering the key: use
    /// QObject::deleteLater() for that.
    void keyDetected();

private:
    const std::unique_ptr<OrvaUtilsPrivate::KeyPressCheatCodeDetectionPrivate> d;
};

#endif // ORVAUTILS_KEYPRESSCHEATCODEDETECTION_H
