// Every window at this desktop's font: no label, button, check box, option
// or frame title shows less than its whole caption.
#include "gui/about_window.h"
#include "support/main_window_fixture.h"

#include <QAbstractButton>
#include <QGroupBox>

using namespace marlith::testing;

namespace {

// What a control shows of its caption, and what it needs.
QStringList cutCaptions(QWidget* window) {
    QStringList cut;
    const auto check = [&](QWidget* control, QString text, int room) {
        text.remove(u'&');
        if (text.isEmpty() || !control->isVisibleTo(window)) return;
        const int needed = control->fontMetrics().horizontalAdvance(text);
        if (needed > room)
            cut << u"%1 \"%2\": %3 of %4"_s.arg(control->objectName(), text).arg(room).arg(needed);
    };
    for (QLabel* label : window->findChildren<QLabel*>())
        if (!label->wordWrap() && label->pixmap().isNull())
            check(label, label->text(), label->contentsRect().width());
    for (QAbstractButton* button : window->findChildren<QAbstractButton*>()) {
        // Check boxes and options give room to their mark.
        const bool marked = qobject_cast<QCheckBox*>(button) || qobject_cast<QRadioButton*>(button);
        check(button, button->text(), button->width() - (marked ? 20 : 6));
    }
    for (QGroupBox* group : window->findChildren<QGroupBox*>())
        check(group, group->title(), group->width() - 8);
    return cut;
}

} // namespace

class TstCaptions : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void everyCaptionFits() {
        Fixture f;
        // With a book open, its panel shows too.
        f.openBook(u"b.fen"_s, "[Event \"x\"]\r\nk7/8\r\n");
        MainWindow& m = *f.window;
        m.showViewWindow();
        m.showHistory();
        m.showGraphicWindow();
        AboutWindow about(f.state.programFolder, &m);
        QCOMPARE(about.findChild<QLabel*>(u"folderLabel"_s)->toolTip(), f.state.programFolder);
        FileChooser chooser(f.state, &m);
        QStringList cut;
        for (QWidget* window :
             QList<QWidget*>{&m, m.viewWindow(), m.historyWindow(), m.graphicWindow(),
                             m.styleWindow(), m.popeyeWindow(), m.craftyWindow(), m.searchWindow(),
                             m.addToBookWindow(), &about, &chooser}) {
            window->show();
            for (const QString& caption : cutCaptions(window))
                cut << window->objectName() + u": "_s + caption;
            window->hide();
        }
        QVERIFY2(cut.isEmpty(), qPrintable(cut.join(u'\n')));
        // The engines' lists: a fixed-width font, and room for the solver's rows of 50 characters.
        for (QWidget* window : QList<QWidget*>{m.popeyeWindow(), m.craftyWindow()}) {
            auto* list = window->findChild<QListWidget*>(u"solutionList"_s);
            QVERIFY(QFontInfo(list->font()).fixedPitch());
            QVERIFY(list->width() >= list->fontMetrics().horizontalAdvance(QString(50, u'0')));
        }
    }
};

QTEST_MAIN(TstCaptions)
#include "tst_captions.moc"
