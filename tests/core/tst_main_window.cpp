#include "core/main_window.h"
#include "drawing/diagram_view.h"
#include "drawing/piece_sheet.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace marlith;

namespace {

// A fresh program folder, state and main window for each case.
struct Fixture {
    QTemporaryDir dir;
    AppState state;
    std::unique_ptr<Form1> form;
    QList<QStringList> instances;
    QLineEdit* text1 = nullptr;
    QLabel* label3 = nullptr;

    explicit Fixture(const QStringList& arguments = {}) {
        qputenv("MARLITH_HOME", dir.path().toUtf8());
        form = std::make_unique<Form1>(state);
        form->startInstance = [this](const QStringList& rest) { instances.append(rest); };
        form->Form_Load(arguments);
        form->show();
        form->activateWindow();
        text1 = form->findChild<QLineEdit*>(QStringLiteral("Text1"));
        label3 = form->findChild<QLabel*>(QStringLiteral("Label3"));
    }
    QString folder() const { return dir.path() + QLatin1Char('/'); }
    void type(const QString& keys) { QTest::keyClicks(text1, keys); }
};

} // namespace

class TstMainWindow : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void startsEmptyInTheDefaultStyle() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        QCOMPARE(f.form->windowTitle(), QStringLiteral("Marlith - Marlith.bmp"));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x0)"));
        QVERIFY(f.text1->text().isEmpty());
        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.state.programFolder, f.folder());
        QCOMPARE(QDir::currentPath() + QLatin1Char('/'), f.folder());
        QVERIFY(QRegularExpression(QStringLiteral("^F\\d{6}$")).match(f.state.tempSeed).hasMatch());
        QCOMPARE(f.state.keepForms, int16_t(-1));
        QCOMPARE(f.state.clickedSquare, int16_t(-1));
        QCOMPARE(f.state.prevInstanceFlag, int16_t(0));
        // 6645 by 3210 twips.
        QCOMPARE(f.form->size(), QSize(443, 214));
        auto* picMain = f.form->findChild<DiagramView*>(QStringLiteral("PicMain"));
        QVERIFY(picMain);
        QCOMPARE(picMain->size(), QSize(124, 124));
        QCOMPARE(picMain->pos(), QPoint(208, 40));
        // The widget shows the diagram image: an empty board from the sheet.
        const QImage shown = picMain->grab().toImage().convertToFormat(QImage::Format_RGB32);
        QCOMPARE(shown, f.form->diagram().image());
        QCOMPARE(shown.copy(15, 0, 15, 15), BuiltInSheet().copy(0, 15, 15, 15));
    }

    void secondInstanceIsNoticed() {
        Fixture first;
        AppState state;
        Form1 second(state);
        second.startInstance = [](const QStringList&) {};
        second.Form_Load({});
        QCOMPARE(state.prevInstanceFlag, int16_t(1));
    }

    void commandLineStartsFurtherInstances() {
        Fixture none;
        QVERIFY(none.instances.isEmpty());
        QVERIFY(none.state.bookFile.isEmpty());
        Fixture three(
            {QStringLiteral("a b.pgn"), QStringLiteral("c.fen"), QStringLiteral("d.pbm")});
        QCOMPARE(three.state.bookFile, QStringLiteral("a b.pgn"));
        QCOMPARE(three.instances.size(), 1);
        QCOMPARE(three.instances[0],
                 QStringList({QStringLiteral("c.fen"), QStringLiteral("d.pbm")}));
    }

    void keysOfThePositionText() {
        Fixture f;
        f.type(QStringLiteral("pp/"));
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/"));
        QCOMPARE(f.text1->cursorPosition(), 4);
        f.type(QStringLiteral("/"));
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/8/"));

        QTest::keyClick(f.text1, Qt::Key_Escape);
        QVERIFY(f.text1->text().isEmpty());

        f.text1->setText(QStringLiteral("p/p"));
        QCOMPARE(f.state.vet[1][1], int16_t(1)); // side by side until Enter
        QTest::keyClick(f.text1, Qt::Key_Return);
        QCOMPARE(f.text1->text(), QStringLiteral("pp6/8/8/8/8/8/8/8"));
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());

        f.text1->setText(QStringLiteral("12"));
        QTest::keyClick(f.text1, Qt::Key_Enter);
        QCOMPARE(f.text1->text(), QStringLiteral("8/8/8/8/8/8/8/8"));

        f.text1->setText(QStringLiteral("pp6/8/8"));
        f.text1->setCursorPosition(0);
        QTest::keyClick(f.text1, Qt::Key_End);
        QCOMPARE(f.text1->text(), QStringLiteral("pp"));
        QCOMPARE(f.text1->cursorPosition(), 2);
        f.text1->setText(QStringLiteral("8/8"));
        QTest::keyClick(f.text1, Qt::Key_End);
        QVERIFY(f.text1->text().isEmpty());

        // Everything else reaches the box unfiltered.
        f.type(QStringLiteral("Zz 9"));
        QCOMPARE(f.text1->text(), QStringLiteral("Zz 9"));
    }

    void counterAndItsFocusBorder() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.type(QStringLiteral("kKQ"));
        QCOMPARE(f.label3->text(), QStringLiteral("(2x1)"));
        f.text1->setText(QStringLiteral("(9x9)k"));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x1)"));
        // Too long a text leaves the counter as it was.
        f.text1->setText(QStringLiteral("K") + QString(45, QLatin1Char('9')));
        QCOMPARE(f.label3->text(), QStringLiteral("(0x1)"));

        QTRY_VERIFY(f.text1->hasFocus());
        QCOMPARE(f.label3->frameShape(), QFrame::Box);
        f.form->findChild<DiagramView*>(QStringLiteral("PicMain"))->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::NoFrame);
        f.text1->setFocus();
        QTRY_COMPARE(f.label3->frameShape(), QFrame::Box);
    }

    void keystrokeRepaintsOnlyChangedSquares() {
        Fixture f;
        Diagram& diagram = f.form->diagram();
        auto copiesOf = [&](auto&& action) {
            const long long before = diagram.copies();
            action();
            return diagram.copies() - before;
        };
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("K")); }), 1);
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("k")); }), 1);
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("/")); }), 0); // "Kk6/": same squares
        QCOMPARE(copiesOf([&] { f.type(QStringLiteral("P")); }), 1);
        QCOMPARE(copiesOf([&] { QTest::keyClick(f.text1, Qt::Key_Backspace); }), 1);
        QCOMPARE(copiesOf([&] {
                     f.text1->setCursorPosition(0);
                     f.type(QStringLiteral("1"));
                 }),
                 3);
        QCOMPARE(copiesOf([&] { f.form->MNStart_Click(); }), 32);
        QCOMPARE(copiesOf([&] { f.form->MNRefresh_Click(); }), 0);
        // After a change of look every square is painted again.
        QCOMPARE(copiesOf([&] {
                     f.form->DrawBoard();
                     ResetVet(f.state.vet, f.state.board());
                     f.form->Build();
                 }),
                 64);
    }

    void commandsOfThePosition() {
        Fixture f;
        QVERIFY(QTest::qWaitForWindowActive(f.form.get()));
        f.form->MNStart_Click();
        QCOMPARE(f.text1->text(), f.state.style.StartPos);
        QCOMPARE(f.text1->cursorPosition(), f.text1->text().size());
        QCOMPARE(f.label3->text(), QStringLiteral("(16x16)"));
        QTest::keyClick(f.text1, Qt::Key_N, Qt::ControlModifier);
        QVERIFY(f.text1->text().isEmpty());
        QTest::keyClick(f.text1, Qt::Key_T, Qt::ControlModifier);
        QCOMPARE(f.text1->text(), f.state.style.StartPos);

        // An edit of the board leaves a sheet cell in the vector; PicMove
        // writes it back as text.
        f.form->MNNew_Click();
        f.state.vet[5][1] = 12 + 13; // white king as the cell of a dark square
        f.form->PicMove();
        QCOMPARE(f.text1->text(), QStringLiteral("5K2/8/8/8/8/8/8/8"));
        QCOMPARE(f.state.vet[5][1], int16_t(12));
    }

    void stopDeletesTemporaryFiles() {
        Fixture f;
        for (const char* name : {"F123456.tmp", "f0000000.tmp", "keep.txt"}) {
            QFile file(f.folder() + QLatin1String(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        f.form->close();
        QCOMPARE(f.state.keepForms, int16_t(0));
        QVERIFY(!QFile::exists(f.folder() + QStringLiteral("F123456.tmp")));
        QVERIFY(!QFile::exists(f.folder() + QStringLiteral("f0000000.tmp")));
        QVERIFY(QFile::exists(f.folder() + QStringLiteral("keep.txt")));
    }
};

QTEST_MAIN(TstMainWindow)
#include "tst_main_window.moc"
