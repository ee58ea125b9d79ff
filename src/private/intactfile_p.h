// SPDX-FileCopyrightText: 2026 The OrvaUtils authors
// SPDX-License-Identifier: MIT

// IntactFile: a file that is read by somebody who takes a failure to read for the end of the file,
// as image readers do.
//
//     IntactFile file(path);
//     const QImage image = QImageReader(&file).read();
//     if (!file.isIntact())
//         ... the image is not what the file holds ...

#ifndef ORVAUTILS_INTACTFILE_P_H
#define ORVAUTILS_INTACTFILE_P_H

#include <QFile>

namespace OrvaUtilsPrivate {

/// A file that is open for reading, and remembers whether anything ever failed. QFile itself knows
/// of its last call only.
class IntactFile : public QFile
{
public:
    explicit IntactFile(const QString& path)
        : QFile(path)
    {
        mIsIntact = !path.isEmpty() && open(QIODevice::ReadOnly);
    }

    /// Whether the file could be opened and every piece of it read that somebody wanted.
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
