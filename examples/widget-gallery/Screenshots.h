// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// Screenshots: each page of the gallery as a picture.

#ifndef SCREENSHOTS_H
#define SCREENSHOTS_H

class GalleryWindow;
class QString;

/// Saves every page of \a window, at the size at which none scrolls, as
/// FOLDER/ID.png; an existing picture is replaced. The window does not appear
/// on the screen. At the first picture that cannot be saved, returns false and
/// sets \a reason to the cause.
bool saveScreenshots(GalleryWindow* window, const QString& folder,
                     QString* reason);

#endif // SCREENSHOTS_H
