// The style library as the build ships it: every style reads, in order, and the
// Popeye table names the pieces. How each style draws is tst_diagram's.
#include "engines/engine_files.h"
#include "engines/popeye.h"
#include "styles/style_block.h"
#include "support/file_bytes.h"
#include "support/shipped_style.h"

#include <QTest>

using namespace marlith;

namespace {

const QString kLibrary = QStringLiteral(MARLITH_SHIPPED_DIR "/");

} // namespace

class TstShippedStyles : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void library() {
        const QByteArray bytes = marlith::testing::readFile(kLibrary + "Marlith.ini");
        QCOMPARE(bytes.count('\n'), bytes.count("\r\n"));
        Style first;
        const SettingsRead reading = testing::readShippedStyle({}, first);
        QVERIFY(reading.opened && !reading.stoppedAtFault && reading.styleNames.size() >= 4);
        // In the order that a stored style keeps, so that it lands among them.
        for (qsizetype i = 1; i < reading.styleNames.size(); ++i)
            QVERIFY(reading.styleNames[i - 1].toUpper() < reading.styleNames[i].toUpper());
        // The first start shows a style of the file, large enough for the screen.
        QVERIFY(reading.styleNames.contains(first.StyleName));
        QVERIFY(twipsToWholePixels(first.SqrWidth) >= 40);
        // The table that ships gives Popeye its own letters (the knight is S),
        // and every entry of its lists can be chosen.
        const PyDat table = readPyDat(kLibrary + QStringLiteral("py.dat"));
        QVERIFY(table.dictionary.contains(u"&&N=WS") && table.dictionary.contains(u"&&n=BS"));
        for (const size_t box : {0, 1, 2, 3, 4, 9, 10}) {
            QVERIFY(table.lists.box(box).size() >= 4);
            for (const QString& entry : table.lists.box(box)) {
                const EntryChoice choice = entryChoice(entry, QString());
                QVERIFY2(choice.none || !choice.param.isEmpty(), qPrintable(entry));
            }
        }
        QCOMPARE(entryChoice(table.lists.stipulation.first(), QStringLiteral("h#")).param, "#");
    }
};

QTEST_MAIN(TstShippedStyles)
#include "tst_shipped_styles.moc"
