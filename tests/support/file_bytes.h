// Whole files written and read back by the tests.
#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/resource.h>

namespace marlith::testing {

// Writes the file anew; a file that can't be written fails the test.
inline void writeFile(const QString& path, const QByteArray& bytes = "x") {
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(path));
    QCOMPARE(file.write(bytes), bytes.size());
}

// The bytes of the file, or "<missing>" when it can't be read.
inline QByteArray readFile(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

inline QByteArray crlf(QByteArray text) {
    return text.replace("\n", "\r\n");
}

// A temporary folder whose path ends in "/".
struct TempFolder : QTemporaryDir {
    QString path() const { return QTemporaryDir::path() + u'/'; }
};

// A full disk for this process: while it lives, a write past `bytes` fails
// with EFBIG instead of ending the process.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &old_);
        rlimit small = old_;
        small.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &old_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

  private:
    rlimit old_{};
};

} // namespace marlith::testing
