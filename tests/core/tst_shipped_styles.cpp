// The style library as the build ships it: every style reads, and the bitmaps
// it names are there and drawn in the layout the program copies from.
#include "core/settings.h"
#include "engines/engine_files.h"
#include "engines/popeye.h"
#include "styles/style_block.h"
#include "support/file_bytes.h"

#include <QFile>
#include <QImage>
#include <QTest>

using namespace marlith;

namespace {

const QString kLibrary = QStringLiteral(MARLITH_SHIPPED_DIR "/");

QString shippedSettingsPath() {
    return kLibrary + QLatin1String(kSettingsFileName);
}

struct ReadStyle {
    Style style;
    SettingsRead reading;
};

// The style of that name, or with none the one the first start shows.
ReadStyle readStyle(const QString& name) {
    ReadStyle read;
    resetStyle(read.style);
    read.style.StyleName = name;
    RecentList recent;
    QString engine;
    read.reading = readSettings(shippedSettingsPath(), kLibrary, read.style, recent, engine);
    return read;
}

int pixels(int16_t twips) {
    return twipsToWholePixels(twips);
}

} // namespace

class TstShippedStyles : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void library() {
        const QByteArray bytes = marlith::testing::readFile(shippedSettingsPath());
        QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));

        const ReadStyle first = readStyle(QString());
        QVERIFY(first.reading.opened && !first.reading.stoppedAtFault);
        const QStringList names = first.reading.styleNames;
        QVERIFY(names.size() >= 4);
        for (qsizetype i = 1; i < names.size(); ++i)
            QVERIFY2(names[i - 1].toUpper() < names[i].toUpper(), qPrintable(names[i]));
        // The first start shows a style of the file, large enough for the screen.
        QVERIFY(names.contains(first.style.StyleName));
        QVERIFY(pixels(first.style.SqrWidth) >= 40);
    }

    void style_data() {
        QTest::addColumn<QString>("name");
        for (const QString& name : readStyle(QString()).reading.styleNames)
            QTest::newRow(qPrintable(name)) << name;
    }

    void style() {
        QFETCH(QString, name);
        const ReadStyle read = readStyle(name);
        const Style& style = read.style;
        QVERIFY(!read.reading.stoppedAtFault);
        QCOMPARE(style.StyleName, name);

        const int width = pixels(style.SqrWidth);
        const int height = pixels(style.SqrHeight);
        const int across = style.SqrHTab > 0 ? pixels(style.SqrHTab) : width;
        const int down = style.SqrVTab > 0 ? pixels(style.SqrVTab) : height;
        const int cellsPerRow = static_cast<int>(style.PiecesList.size()) + 1;
        QCOMPARE(cellsPerRow, 13);
        const QImage sheet(style.PiecesFile);
        QVERIFY2(!sheet.isNull(), qPrintable(style.PiecesFile));
        QVERIFY(sheet.width() >= (cellsPerRow - 1) * across + width);
        QVERIFY(sheet.height() >= down + height);
        const auto cell = [&](int column, int row) {
            return sheet.copy(column * across, row * down, width, height);
        };
        // Light squares above, dark below, and a piece in every other cell.
        QVERIFY(cell(0, 0) != cell(0, 1));
        for (int row = 0; row < 2; ++row)
            for (int column = 1; column < cellsPerRow; ++column)
                QVERIFY2(cell(column, row) != cell(0, row),
                         qPrintable(QStringLiteral("cell %1 of row %2").arg(column).arg(row)));

        if (style.BorderFile.isEmpty()) return;
        const QImage border(style.BorderFile);
        QVERIFY2(!border.isNull(), qPrintable(style.BorderFile));
        QVERIFY(border.width() >= pixels(style.XBase) + style.BorderWidth * across);
        QVERIFY(border.height() >= pixels(style.YBase) + style.BorderHeight * down);
    }

    // The table that ships gives Popeye its own letters (the knight is S),
    // and every entry of its lists can be chosen.
    void popeyeTable() {
        const PyDat table = readPyDat(kLibrary + QStringLiteral("py.dat"));
        QVERIFY(table.dictionary.contains(u"&&N=WS") && table.dictionary.contains(u"&&n=BS"));
        for (const int box : {0, 1, 2, 3, 4, 9, 10}) {
            const QStringList& entries = table.lists.box(static_cast<size_t>(box));
            QVERIFY2(entries.size() >= 4, qPrintable(QString::number(box)));
            for (const QString& entry : entries) {
                const EntryChoice choice = entryChoice(entry, QString());
                QVERIFY2(choice.none || !choice.param.isEmpty(), qPrintable(entry));
            }
        }
        QCOMPARE(entryChoice(table.lists.stipulation.first(), QStringLiteral("h#")).param, "#");
    }
};

QTEST_GUILESS_MAIN(TstShippedStyles)
#include "tst_shipped_styles.moc"
