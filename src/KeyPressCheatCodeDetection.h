// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// KeyPressCheatCodeDetection: detects when the user has typed a secret word into a window, without
// consuming a single key.

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

/// Watches the key presses of one object and emits keyDetected() when a sequence of characters has
/// been typed.
///
/// \code
/// auto* detection = new KeyPressCheatCodeDetection(mainWindow);
/// detection->setKey(QStringLiteral("diagnostics"));
/// connect(detection, &KeyPressCheatCodeDetection::keyDetected, this, &Shop::showDiagnostics);
/// \endcode
///
/// The sequence always comes from the caller; the class has none of its own, and with an empty one
/// nothing is ever emitted. Thread: the GUI thread. Nothing is logged.
class ORVAUTILS_EXPORT KeyPressCheatCodeDetection : public QObject
{
    Q_OBJECT

public:
    /// Becomes a child of \a target, is destroyed with it, and installs itself as its event filter.
    /// The sequence is empty. \a target must not be null; this is not checked.
    explicit KeyPressCheatCodeDetection(QObject* target);
    /// Ends the detection.
    ~KeyPressCheatCodeDetection() override;

    /// Sets the sequence to detect; what was typed so far is forgotten.
    void setKey(const QString& key);

    /// Passes \a event to keyPressEvent() if it is a key press and \a watched is the parent. Always
    /// returns false, so that the application still receives every key; events of other objects are
    /// ignored.
    bool eventFilter(QObject* watched, QEvent* event) override;

    /// Takes one key press into account. Only an event whose text is exactly one character counts;
    /// any other (Shift alone, a dead key, text of an input method) changes nothing.
    ///
    /// The character is compared case-insensitively with the next one of the sequence. If they
    /// match, the detection moves on; after the last character it emits keyDetected() and starts
    /// again. If they differ, the detection starts again with the next key: the differing character
    /// itself is deliberately not tried as the first of a new match, so that "aab" typed for the
    /// sequence "ab" detects nothing.
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
