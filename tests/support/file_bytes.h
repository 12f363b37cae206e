// Whole files written and read back by the tests.
#pragma once

#include <QFile>
#include <QTest>

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

} // namespace marlith::testing
