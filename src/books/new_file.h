// Files of fixed names in the program folder (an engine's command file, a
// work file) are made anew for each use: whatever stood under the name goes
// first, and a link that appears there meanwhile is never followed, so that
// no other file is ever written through such a name.
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QFile>
#include <QString>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace marlith {

// A descriptor of the new, empty file, open for reading and writing, or -1.
inline int createNewFile(const QString& path) {
    QFile::remove(path);
    return ::open(QFile::encodeName(path).constData(),
                  O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644);
}

// Writes all the bytes to the descriptor, going on after a signal or a short
// write: 0, or the error that stopped it (ENOSPC when nothing more went out).
inline int writeAll(int fd, QByteArrayView bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t n = ::write(fd, bytes.data() + done, size_t(bytes.size() - done));
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n < 0 ? errno : ENOSPC;
        done += n;
    }
    return 0;
}

// The file made anew with these bytes; false (and no file) when it can't be
// written whole.
inline bool writeNewFile(const QString& path, const QByteArray& bytes) {
    const int fd = createNewFile(path);
    if (fd < 0) return false;
    const bool written = writeAll(fd, bytes) == 0;
    const bool ok = ::close(fd) == 0 && written;
    if (!ok) QFile::remove(path);
    return ok;
}

} // namespace marlith
