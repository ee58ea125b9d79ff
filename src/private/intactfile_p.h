// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// IntactFile: a file for code that mistakes a read error for the end of the file, as image readers
// do.
//
//     IntactFile file(path);
//     const QImage image = QImageReader(&file).read();
//     if (!file.isIntact())
//         ... the image may be incomplete ...

#ifndef ORVAUTILS_INTACTFILE_P_H
#define ORVAUTILS_INTACTFILE_P_H

#include <QFile>

namespace OrvaUtilsPrivate {

/// A file that is open for reading and remembers whether any call failed. QFile itself knows only
/// the result of the last one.
class IntactFile : public QFile
{
public:
    explicit IntactFile(const QString& path)
        : QFile(path)
    {
        // The system would end the path at a NUL, and open another file.
        mIsIntact = !path.isEmpty() && !path.contains(QChar()) && open(QIODevice::ReadOnly);
    }

    /// Whether the file could be opened and every read succeeded.
    bool isIntact() const { return mIsIntact; }

protected:
    qint64 readData(char* data, qint64 size) override
    {
        const qint64 got = QFile::readData(data, size);
        mIsIntact = mIsIntact && got >= 0;
        return got;
    }

private:
    bool mIsIntact;
};

} // namespace OrvaUtilsPrivate

#endif // ORVAUTILS_INTACTFILE_P_H
