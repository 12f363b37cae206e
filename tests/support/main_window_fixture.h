// A fresh program folder, state and main window for each case of a GUI test,
// and the windows and controls the GUI tests drive.
#pragma once

#include "drawing/piece_sheet.h"
#include "gui/add_to_book_window.h"
#include "gui/book_panel.h"
#include "gui/crafty_window.h"
#include "gui/diagram_view.h"
#include "gui/file_chooser.h"
#include "gui/graphic_window.h"
#include "gui/history_window.h"
#include "gui/main_window.h"
#include "gui/popeye_window.h"
#include "gui/search_window.h"
#include "gui/solution_list.h"
#include "gui/style_window.h"
#include "gui/tool_button.h"
#include "gui/view_window.h"
#include "support/file_bytes.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollBar>
#include <memory>

namespace marlith::testing {

// A test that uses this namespace names the program's own types plainly too.
using namespace marlith;
using namespace Qt::StringLiterals;

inline void drag(QWidget* widget, QPoint from, QPoint to, Qt::KeyboardModifiers keys = {},
                 Qt::MouseButton button = Qt::LeftButton) {
    QTest::mousePress(widget, button, keys, from);
    QTest::mouseRelease(widget, button, keys, to);
}

// While it lives, HOME is `folder`: a page printed without a printer goes to
// its documents folder, never to the user's.
struct HomeFolder {
    explicit HomeFolder(const QString& folder) { qputenv("HOME", folder.toUtf8()); }
    ~HomeFolder() { qputenv("HOME", real); }
    const QByteArray real = qgetenv("HOME");
};

struct Fixture {
    QTemporaryDir dir;
    HomeFolder userHome{dir.path()}; // nothing a window does lands in the real home
    QString home;                    // the program folder: dir unless another is given
    AppState state;
    std::unique_ptr<MainWindow> window;
    QList<QStringList> instances; // arguments of further instances started
    QStringList warnings;
    QStringList informed;
    QLineEdit* positionEdit = nullptr;
    QLabel* pieceCounterLabel = nullptr;

    explicit Fixture(const QStringList& arguments = {}, const QByteArray& settings = {},
                     const QString& folder = {})
        : home(folder.isEmpty() ? dir.path() : folder) {
        qputenv("MARLITH_HOME", home.toUtf8());
        if (!settings.isEmpty()) writeFile(home + u"/Marlith.ini"_s, settings);
        window = std::make_unique<MainWindow>(state);
        window->startInstance = [this](const QStringList& rest) { instances.append(rest); };
        window->warn = [this](const QString& text) { warnings.append(text); };
        window->inform = [this](const QString& text) { informed.append(text); };
        // A command that opens the file chooser finds it closed at once.
        window->runChooser = [](FileChooser& chooser) { chooser.cancel(); };
        window->start(arguments);
        window->show();
        window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window.get())); // keys and focus need it
        positionEdit = window->findChild<QLineEdit*>(u"positionEdit"_s);
        pieceCounterLabel = window->findChild<QLabel*>(u"pieceCounterLabel"_s);
    }
    QString folder() const { return home + QLatin1Char('/'); }
    // The book is read on a thread of its own; the window then shows game 1.
    void waitForScan() {
        if (!QTest::qWaitFor([this] { return !window->bookScanRunning(); }, 120'000))
            QFAIL("the scan of the book did not end");
    }
    // A book of these bytes in the program folder, opened and read.
    void openBook(const QString& name, const QByteArray& bytes) {
        writeFile(state.bookFile = folder() + name, bytes);
        window->loadBook();
        waitForScan();
    }
    // Fills the Search Criteria fields and presses Enter, as a user would.
    void search(const QStringList& fields) {
        window->runSearchWindow = [&](SearchWindow& w) {
            w.show();
            for (int i = 0; i < 5; ++i)
                w.fieldEdit(i)->setText(fields.value(i));
            QTest::keyClick(w.fieldEdit(4), Qt::Key_Return);
            w.hide();
        };
        action("searchAction")->trigger();
    }
    void type(const QString& keys) { QTest::keyClicks(positionEdit, keys); }
    // The position after a key in its box, a stroke on the board or a command.
    QString key(Qt::Key key, Qt::KeyboardModifiers keys = {}) {
        QTest::keyClick(positionEdit, key, keys);
        return positionEdit->text();
    }
    QString dragOnBoard(QPoint from, QPoint to, Qt::KeyboardModifiers keys = {},
                        Qt::MouseButton button = Qt::LeftButton) {
        drag(window->diagramView(), from, to, keys, button);
        return positionEdit->text();
    }
    QString run(const char* command) {
        action(command)->trigger();
        return positionEdit->text();
    }
    QAction* action(const char* name) const { return window->action(QLatin1String(name)); }
    DiagramView* diagramView() const { return window->diagramView(); }
    template <typename T = ToolButton> T* child(const char* name) const {
        return window->findChild<T*>(QLatin1String(name));
    }
};

// The texts of a list's rows, or of a combo box's items.
template <typename List> QStringList itemTexts(const List* list) {
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        if constexpr (std::is_same_v<List, QComboBox>)
            texts << list->itemText(i);
        else
            texts << list->item(i)->text();
    return texts;
}

// The middle of square (row, column) of the default 15-pixel board.
inline QPoint squareCentre(int row, int column) {
    return QPoint(column * 15 + 7, row * 15 + 7);
}

} // namespace marlith::testing
