#include "gui/main_window.h"

#include "books/book_scan.h"
#include "books/scan_job.h"
#include "core/settings.h"
#include "core/startup.h"
#include "core/style_list.h"
#include "core/text_keys.h"
#include "editing/board_edit.h"
#include "editing/board_effects.h"
#include "editing/history.h"
#include "gui/about_window.h"
#include "gui/add_to_book_window.h"
#include "gui/book_panel.h"
#include "gui/child_window_place.h"
#include "gui/diagram_view.h"
#include "gui/export_window.h"
#include "gui/file_chooser.h"
#include "gui/graphic_window.h"
#include "gui/help_window.h"
#include "gui/history_window.h"
#include "gui/search_window.h"
#include "gui/solution_list.h"
#include "gui/style_window.h"
#include "gui/tool_button.h"
#include "gui/tool_faces.h"
#include "gui/view_window.h"
#include "gui/widget_geometry.h"
#include "output/image_output.h"
#include "position/piece_listing.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QGroupBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLockFile>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPainter>
#include <QProcess>
#include <QPushButton>
#include <QScrollBar>
#include <QTime>
#include <QTimer>
#include <cmath>

namespace marlith {

namespace {

QFrame* separatorLine(QWidget* parent, int y, const QColor& colour) {
    auto* line = new QFrame(parent);
    line->setGeometry(0, y, 12000 / kTwipsPerPixel, 1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, colour);
    line->setPalette(palette);
    return line;
}

// A tool button's tip: its menu item's caption and shortcut.
QString toolTipOf(const QAction* item) {
    QString tip = item->text().remove(u'&');
    if (!item->shortcut().isEmpty())
        tip += QStringLiteral(" (") + item->shortcut().toString(QKeySequence::NativeText) + u')';
    return tip;
}

// A tool button and the menu item whose command it runs; the engine button
// runs the engine last used, which has no item of its own.
struct StripButton {
    const char* name;
    const char* menuItem;
    bool opensWindow = false; // the focus goes to that window, not back to the text
};
constexpr StripButton kFirstStrip[9] = {{"saveImageButton", "saveImageAction"},
                                        {"graphicButton", "graphicAction", true},
                                        {"historyButton", "historyAction", true},
                                        {"copyImageButton", "copyImageAction"},
                                        {"copyHtmlButton", "copyHtmlAction"},
                                        {"copyPositionButton", "copyPositionAction"},
                                        {"pastePositionButton", "pastePositionAction"},
                                        {"printButton", "printAction"},
                                        {"engineButton", nullptr, true}};
constexpr StripButton kSecondStrip[9] = {{"newButton", "newAction"},
                                         {"startPositionButton", "startPositionAction"},
                                         {"moveRightButton", "moveRightAction"},
                                         {"moveLeftButton", "moveLeftAction"},
                                         {"moveUpButton", "moveUpAction"},
                                         {"moveDownButton", "moveDownAction"},
                                         {"rotateButton", "rotateAction"},
                                         {"horizontalMirrorButton", "horizontalMirrorAction"},
                                         {"diagonalMirrorButton", "diagonalMirrorAction"}};

} // namespace

MainWindow::MainWindow(AppState& state, QWidget* parent) : QMainWindow(parent), state_(state) {
    // The windows' geometry was made for a font of 8 points; the desktop's
    // own, often larger, would cut their captions.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(8.25);
    QApplication::setFont(font);
    setObjectName(QStringLiteral("mainWindow"));
    setWindowIcon(programIcon());
    createControls();
    createMenus();
    placeControls();

    startInstance = [this](const QStringList& rest) {
        QProcess::startDetached(QCoreApplication::applicationFilePath(), rest,
                                state_.programFolder);
    };
    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };
    inform = [this](const QString& text) {
        QMessageBox::information(this, QStringLiteral("Marlith"), text);
    };
}

MainWindow::~MainWindow() = default;

void MainWindow::createControls() {
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("centralWidget"));
    setCentralWidget(central);

    separatorLine(central, 0, QColor(0xE0, 0xE0, 0xE0))
        ->setObjectName(QStringLiteral("menuSeparatorLine"));
    separatorLine(central, 480 / kTwipsPerPixel, QColor(0x80, 0x80, 0x80))
        ->setObjectName(QStringLiteral("toolSeparatorLine"));

    pieceCounterLabel_ = new QLabel(QStringLiteral("(0x0) "), central);
    pieceCounterLabel_->setObjectName(QStringLiteral("pieceCounterLabel"));
    pieceCounterLabel_->setAlignment(Qt::AlignCenter);
    positionEdit_ = new QLineEdit(central);
    positionEdit_->setObjectName(QStringLiteral("positionEdit"));
    positionEdit_->installEventFilter(this);
    connect(positionEdit_, &QLineEdit::textChanged, this, [this] { buildBoard(); });
    typingPause_ = new QTimer(this);
    typingPause_->setSingleShot(true);
    typingPause_->setInterval(1000);
    connect(typingPause_, &QTimer::timeout, this, &MainWindow::flushTyping);
    connect(positionEdit_, &QLineEdit::textEdited, this, [this] {
        typingPause_->start();
        updateUndoItems();
    });

    // The tool strips. A strip takes the focus while one of its buttons is held.
    firstToolStrip_ = new QWidget(central);
    firstToolStrip_->setObjectName(QStringLiteral("firstToolStrip"));
    firstToolStrip_->setFocusPolicy(Qt::ClickFocus);
    secondToolStrip_ = new QWidget(central);
    secondToolStrip_->setObjectName(QStringLiteral("secondToolStrip"));
    secondToolStrip_->setFocusPolicy(Qt::ClickFocus);
    const auto faces3 = firstStripFaces();
    const auto faces5 = secondStripFaces();
    recModeFaces_ = recModeFaces();
    const auto& faces8 = recModeFaces_;
    for (int i = 0; i < 9; ++i) {
        firstStripButtons_[i] = new ToolButton(faces3[i], faces3[i + 9], firstToolStrip_);
        firstStripButtons_[i]->setObjectName(QLatin1String(kFirstStrip[i].name));
        secondStripButtons_[i] = new ToolButton(faces5[i], faces5[i + 9], secondToolStrip_);
        secondStripButtons_[i]->setObjectName(QLatin1String(kSecondStrip[i].name));
    }
    firstStripButtons_[8]->hide(); // shown when an engine is found
    recModeButton_ = new ToolButton(faces8[0], faces8[0], secondToolStrip_);
    recModeButton_->setObjectName(QStringLiteral("recModeButton"));

    auto* styleGroup = new QGroupBox(QStringLiteral("Pieces Styles"), central);
    styleGroup->setObjectName(QStringLiteral("styleGroup"));
    QFont bold = styleGroup->font();
    bold.setBold(true);
    styleGroup->setFont(bold);
    styleGroup->setGeometry(twipsRect(0, 1440, 3015, 735));
    styleBox_ = new QComboBox(central);
    styleBox_->setObjectName(QStringLiteral("styleBox"));
    styleBox_->setEditable(true);
    styleBox_->setInsertPolicy(QComboBox::NoInsert);
    styleBox_->setMaxVisibleItems(20);
    // Names are matched whole on Enter; nothing completes them while typing,
    // and the wheel picks nothing unless the list has the focus.
    styleBox_->setCompleter(nullptr);
    styleBox_->setFocusPolicy(Qt::StrongFocus);
    styleBox_->installEventFilter(this);
    styleBox_->lineEdit()->installEventFilter(this);
    connect(styleBox_, &QComboBox::activated, this, [this] { chooseStyle(); });
    auto* viewButton = new QPushButton(QStringLiteral("&View"), central);
    viewButton->setObjectName(QStringLiteral("viewButton"));
    connect(viewButton, &QPushButton::clicked, this, &MainWindow::showViewWindow);
    viewButton->setGeometry(twipsRect(2160, 1680, 735, 315));
    styleBox_->setGeometry(twipsRect(120, 1680, 1935, 315));

    bookPanel_ = new BookPanel(state_, central);
    connect(bookPanel_, &BookPanel::positionShown, this, &MainWindow::showPosition);
    connect(bookPanel_, &BookPanel::stepped, this, &MainWindow::moveCaretToEnd);
    connect(bookPanel_, &BookPanel::styleTagFound, this, &MainWindow::chooseStyleByName);
    connect(bookPanel_, &BookPanel::refreshRequested, this, &MainWindow::refreshPosition);
    bookPanel_->setGeometry(twipsRect(0, 2280, 3015, 5775));
    bookPanel_->hide(); // the book panel, shown while a book is open

    diagramView_ = new DiagramView(diagram_, central);
    diagramView_->setSharpPainter([this](QPainter& painter) { paintDiagram(painter, false); });
    diagramView_->setFocusPolicy(Qt::TabFocus);
    connect(diagramView_, &DiagramView::pressed, this, &MainWindow::pressOnBoard);
    connect(diagramView_, &DiagramView::dragged, this, &MainWindow::dragOnBoard);
    connect(diagramView_, &DiagramView::released, this, &MainWindow::releaseOnBoard);
    setTabOrder(positionEdit_, styleBox_);
    setTabOrder(styleBox_, diagramView_);
}

void MainWindow::placeControls() {
    pieceCounterLabel_->setGeometry(twipsRect(0, 75, 855, 315));
    positionEdit_->setGeometry(twipsRect(840, 75, 5655, 315));
    firstToolStrip_->setGeometry(twipsRect(0, 600, 3015, 340));
    secondToolStrip_->setGeometry(twipsRect(0, 960, 3015, 340));
    const int firstStripLeft[9] = {0, 690, 980, 1400, 1680, 1970, 2250, 290, 2670};
    for (int i = 0; i < 9; ++i)
        firstStripButtons_[i]->move(firstStripLeft[i] / kTwipsPerPixel, 0);
    const QPoint secondStripPlaces[9] = {{0, 0},    {290, 0},  {690, 0},  {690, 143}, {985, 0},
                                         {1122, 0}, {1400, 0}, {1680, 0}, {1970, 0}};
    for (int i = 0; i < 9; ++i)
        secondStripButtons_[i]->move(secondStripPlaces[i].x() / kTwipsPerPixel,
                                     secondStripPlaces[i].y() / kTwipsPerPixel);
    recModeButton_->move(2670 / kTwipsPerPixel, 0);
    diagramView_->move(3120 / kTwipsPerPixel, 600 / kTwipsPerPixel);
}

void MainWindow::createMenus() {
    using Slot = void (MainWindow::*)();
    struct Item {
        const char* name;
        const char* caption; // "-" for a separator, nullptr for a submenu's end
        QKeySequence keys;
        bool enabled;
        Slot slot;
    };
    auto addItems = [this](QMenu* menu, std::initializer_list<Item> items) {
        for (const Item& item : items) {
            QAction* action = QLatin1String(item.caption) == QLatin1String("-")
                                  ? menu->addSeparator()
                                  : menu->addAction(QString::fromUtf8(item.caption));
            action->setObjectName(QLatin1String(item.name));
            action->setShortcut(item.keys);
            action->setEnabled(item.enabled);
            if (item.slot) connect(action, &QAction::triggered, this, item.slot);
            actions_[action->objectName()] = action;
        }
    };
    auto addMenu = [this](QMenu* parent, const char* name, const char* caption) {
        QMenu* menu = parent ? parent->addMenu(QString::fromUtf8(caption))
                             : menuBar()->addMenu(QString::fromUtf8(caption));
        menu->setObjectName(QLatin1String(name));
        menu->menuAction()->setObjectName(QLatin1String(name));
        actions_[QLatin1String(name)] = menu->menuAction();
        return menu;
    };
    const auto ctrl = [](Qt::Key key) { return QKeySequence(Qt::CTRL | key); };

    QMenu* file = addMenu(nullptr, "fileMenu", "&File");
    addItems(file,
             {{"newAction", "&New", ctrl(Qt::Key_N), true, &MainWindow::newPosition},
              {"startPositionAction", "S&tart Position", ctrl(Qt::Key_T), true,
               &MainWindow::setStartPosition},
              {"fileSeparator1", "-", {}, true, nullptr},
              {"saveImageAction", "&Save Image", ctrl(Qt::Key_S), true, &MainWindow::saveImage},
              {"saveImageAsAction", "Save Image &As...",
               QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), true, &MainWindow::saveImageAs},
              {"exportDiagramAction", "Export &Diagram...",
               QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E), true, &MainWindow::exportDiagram},
              {"fileSeparator2", "-", {}, true, nullptr},
              {"openBookAction", "Open &Book", ctrl(Qt::Key_B), true, &MainWindow::openBook},
              {"searchAction", "&Criteria", ctrl(Qt::Key_F), false, &MainWindow::searchBook},
              {"closeBookAction", "Cl&ose book", ctrl(Qt::Key_O), false, &MainWindow::closeBook},
              {"fileSeparator3", "-", {}, true, nullptr},
              {"printAction", "&Print", ctrl(Qt::Key_P), true, &MainWindow::printDiagram},
              {"fileSeparator4", "-", {}, true, nullptr}});
    for (int i = 0; i < 4; ++i) {
        recentBookActions_[i] = file->addAction(QString());
        recentBookActions_[i]->setObjectName(QStringLiteral("recentBookAction%1").arg(i));
        recentBookActions_[i]->setVisible(false);
        connect(recentBookActions_[i], &QAction::triggered, this, [this, i] { openRecentBook(i); });
        actions_[recentBookActions_[i]->objectName()] = recentBookActions_[i];
    }
    addItems(file, {{"fileSeparator5", "-", {}, true, nullptr},
                    {"exitAction", "E&xit", ctrl(Qt::Key_Q), true, &MainWindow::exitProgram}});
    // Escape stops the scan of a book wherever the focus is; at other times
    // the key does what each control does with it.
    auto* stopScan = new QAction(QStringLiteral("Stop reading the book"), this);
    stopScan->setObjectName(QStringLiteral("stopScanAction"));
    stopScan->setShortcut(Qt::Key_Escape);
    stopScan->setEnabled(false);
    addAction(stopScan);
    connect(stopScan, &QAction::triggered, this, &MainWindow::stopBookScan);
    actions_[stopScan->objectName()] = stopScan;
    scanTimer_ = new QTimer(this);
    scanTimer_->setInterval(50);
    connect(scanTimer_, &QTimer::timeout, this, &MainWindow::pollBookScan);

    QMenu* edit = addMenu(nullptr, "editMenu", "&Edit");
    addItems(edit,
             {{"undoAction", "&Undo", ctrl(Qt::Key_Z), false, &MainWindow::undoChange},
              {"redoAction", "&Redo", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), false,
               &MainWindow::redoChange},
              {"editSeparator0", "-", {}, true, nullptr},
              {"refreshAction", "Refre&sh = <Enter>", {}, true, &MainWindow::refreshPosition}});
    QMenu* copy = addMenu(edit, "copyMenu", "Cop&y");
    addItems(copy,
             {{"copyPositionAction", "&Marlith", ctrl(Qt::Key_C), true, &MainWindow::copyPosition},
              {"copyImageAction", "&Image", ctrl(Qt::Key_I), true, &MainWindow::copyImage},
              {"copyHtmlAction", "HTM&L", ctrl(Qt::Key_L), true, &MainWindow::copyHtml}});
    addItems(edit,
             {{"pastePositionAction", "&Paste Marlith", ctrl(Qt::Key_V), true,
               &MainWindow::pastePosition},
              {"editSeparator1", "-", {}, true, nullptr},
              {"historyAction", "&History", ctrl(Qt::Key_H), true, &MainWindow::showHistory},
              {"recModeAction", "Rec &Mode", ctrl(Qt::Key_M), true, &MainWindow::switchRecMode},
              {"undoRecAction", "Undo Re&c", {}, false, &MainWindow::undoRec},
              {"editSeparator2", "-", {}, true, nullptr}});
    QMenu* effects = addMenu(edit, "effectsMenu", "E&ffects");
    addItems(effects,
             {{"reverseAction", "&Reverse", ctrl(Qt::Key_R), true, &MainWindow::toggleReversed}});
    // Every effect is one call with its kind.
    const struct {
        const char* name;
        const char* caption;
        Qt::Key key;
        BoardEffect effect;
    } effectItems[] = {
        {"horizontalMirrorAction", "Hori&zontal Mirror", Qt::Key_F2, BoardEffect::HorizontalMirror},
        {"diagonalMirrorAction", "Dia&gonal Mirror", Qt::Key_F3, BoardEffect::DiagonalMirror},
        {"rotateAction", "R&otate 90°", Qt::Key_F4, BoardEffect::Rotate},
        {"moveLeftAction", "Move L&eft", Qt::Key_F5, BoardEffect::Left},
        {"moveRightAction", "Move R&ight", Qt::Key_F6, BoardEffect::Right},
        {"moveUpAction", "Mo&ve Up", Qt::Key_F7, BoardEffect::Up},
        {"moveDownAction", "Move &Down", Qt::Key_F8, BoardEffect::Down}};
    for (const auto& item : effectItems) {
        addItems(effects, {{item.name, item.caption, QKeySequence(item.key), true, nullptr}});
        const BoardEffect effect = item.effect;
        connect(actions_[QLatin1String(item.name)], &QAction::triggered, this,
                [this, effect] { applyEffect(effect); });
    }
    addItems(edit,
             {{"graphicAction", "&Graphic", ctrl(Qt::Key_G), true, &MainWindow::showGraphicWindow},
              {"styleAction", "Styl&e", ctrl(Qt::Key_E), true, &MainWindow::editStyle}});

    QMenu* engines = addMenu(nullptr, "enginesMenu", "En&gines");
    addItems(engines,
             {{"popeyeAction", "Pope&ye", ctrl(Qt::Key_Y), true, &MainWindow::openPopeye},
              {"craftyAction", "&Crafty", ctrl(Qt::Key_K), true, &MainWindow::openCrafty}});

    QMenu* help = addMenu(nullptr, "helpMenu", "&Help");
    addItems(help, {{"helpContentsAction", "&Contents", QKeySequence(Qt::Key_F1), true,
                     &MainWindow::showHelp},
                    {"helpSeparator", "-", {}, true, nullptr},
                    {"aboutAction", "&About...", {}, true, &MainWindow::showAbout}});

    // The tool buttons run the commands of their menu items.
    for (int i = 0; i < 9; ++i) {
        const bool opensWindow = kFirstStrip[i].opensWindow;
        std::function<void()> command;
        if (kFirstStrip[i].menuItem) {
            QAction* menuItem = actions_.at(QLatin1String(kFirstStrip[i].menuItem));
            command = [menuItem] { menuItem->trigger(); };
        } else {
            command = [this] {
                const QString engine = state_.recentEngine.toUpper();
                if (engine == QLatin1String("POPEYE"))
                    action(QStringLiteral("popeyeAction"))->trigger();
                else if (engine == QLatin1String("CRAFTY"))
                    action(QStringLiteral("craftyAction"))->trigger();
            };
        }
        connect(firstStripButtons_[i], &ToolButton::clicked, this,
                [this, command, opensWindow] { runToolCommand(command, opensWindow); });
        firstStripButtons_[i]->setToolTip(
            kFirstStrip[i].menuItem ? toolTipOf(actions_.at(QLatin1String(kFirstStrip[i].menuItem)))
                                    : QStringLiteral("The engine used last"));
        QAction* secondStripItem = actions_.at(QLatin1String(kSecondStrip[i].menuItem));
        secondStripButtons_[i]->setToolTip(toolTipOf(secondStripItem));
        connect(secondStripButtons_[i], &ToolButton::clicked, this, [this, secondStripItem] {
            runToolCommand([secondStripItem] { secondStripItem->trigger(); }, false);
        });
    }
    // Reverse is a display mode: checked while on.
    action(QStringLiteral("reverseAction"))->setCheckable(true);
    // Rec Mode is a state: its item carries a check mark, its button a face.
    QAction* rec = action(QStringLiteral("recModeAction"));
    rec->setCheckable(true);
    // Checked while a search narrows the book.
    action(QStringLiteral("searchAction"))->setCheckable(true);
    recModeButton_->setToolTip(toolTipOf(rec));
    connect(recModeButton_, &ToolButton::clicked, this,
            [this, rec] { runToolCommand([rec] { rec->trigger(); }, false); });
}

QAction* MainWindow::action(const QString& name) const {
    const auto found = actions_.find(name);
    return found == actions_.end() ? nullptr : found->second;
}

void MainWindow::runToolCommand(const std::function<void()>& command, bool keepsFocus) {
    // A command that the user started from a button runs even where its menu
    // item is disabled only if the item allows it: QAction::trigger checks.
    command();
    if (!keepsFocus) focusPositionAtEnd();
}

void MainWindow::focusPositionAtEnd() {
    positionEdit_->end(false);
    positionEdit_->setFocus();
}

void MainWindow::moveCaretToEnd() {
    positionEdit_->end(false);
}

void MainWindow::start(const QStringList& arguments) {
    const QString folder = programFolder();
    // Another instance holds the lock while it runs.
    instanceLock_ = std::make_unique<QLockFile>(folder + QStringLiteral("Marlith.lock"));
    instanceLock_->setStaleLockTime(0);
    state_.otherInstanceRunning = !instanceLock_->tryLock(0);

    state_.tempSeed = makeTempSeed(QTime::currentTime().msecsSinceStartOfDay());
    seedLock_ = takeTempSeed(folder, state_.tempSeed);
    // What copies that ended without cleaning up left behind.
    deleteOrphanedTempFiles(folder,
                            [&folder](const QString& seed) { return seedHeld(folder, seed); });
    state_.programFolder = folder;
    QDir::setCurrent(folder);

    styleBox_->clear();
    styleBox_->addItem(QStringLiteral("CUSTOM"));

    state_.imageFile = QStringLiteral("Marlith.bmp");
    state_.mainWindowAlive = true;
    state_.clickedSquare = -1;
    state_.chosenPiece = -1;
    setWindowTitle(QStringLiteral("Marlith - Marlith.bmp"));

    readSettings();
    detectEngines();

    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;

    QStringList names;
    for (int i = 1; i < styleBox_->count(); ++i)
        names << styleBox_->itemText(i);
    names = sortStyleNames(names);
    for (int i = 0; i < names.size(); ++i)
        styleBox_->setItemText(i + 1, names[i]);
    showStyleName();

    invalidatePainted(state_.squares, state_.board());
    buildBoard();
    restoreSession();

    const CommandLine line = splitCommandLine(arguments);
    if (!line.rest.isEmpty() && startInstance) startInstance(line.rest);
    state_.bookFile = line.bookFile;
    if (!state_.bookFile.isEmpty()) loadBook();

    positionEdit_->setFocus();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    closeChildWindows();
    shutDown();
    event->accept();
}

void MainWindow::closeChildWindows() {
    state_.mainWindowAlive = false;
    for (QWidget* window : childWindows_)
        if (window) window->close();
    if (helpWindow_) helpWindow_->close();
}

void MainWindow::shutDown() {
    if (unloaded_) return;
    unloaded_ = true;
    // The poll would find no scan: both go.
    scanTimer_->stop();
    scanJob_.reset(); // its work file is deleted below
    if (state_.programFolder.isEmpty()) return;
    writeSettings();
    cleanUpEngines();
    deleteTempFiles(state_.programFolder, state_.tempSeed);
    seedLock_.reset();
    if (instanceLock_) instanceLock_->unlock();
}

void MainWindow::drawBoard() {
    const Diagram::Outcome outcome =
        diagram_.drawBoard(state_.style, state_.reversedBoard, state_.programFolder);
    // Rotation and the diagonal mirror are offered on square boards only.
    action(QStringLiteral("rotateAction"))->setEnabled(outcome.squareBoard);
    action(QStringLiteral("diagonalMirrorAction"))->setEnabled(outcome.squareBoard);
    secondStripButtons_[6]->setVisible(outcome.squareBoard);
    secondStripButtons_[8]->setVisible(outcome.squareBoard);
    diagramView_->refresh(diagram_.takeDirty());
    if (!isNormalState(*this)) return;
    // The panel counts once it is shown, even before the window is.
    const QSize twips = mainWindowSize(state_.style, !bookPanel_->isHidden());
    resize(twipsToWholePixels(twips.width()), twipsToWholePixels(twips.height()));
}

void MainWindow::buildBoard() {
    setCursor(Qt::WaitCursor);
    // The counter is taken from the board, where the dictionary can tell
    // neutral pieces apart.
    const bool complete = marlith::buildBoard(
        positionEdit_->text(), state_.squares, state_.board(), state_.style.PiecesList,
        [this](int cell, int oneBasedSquare) {
            diagram_.copyCellToSquare(cell, oneBasedSquare, state_.style, state_.reversedBoard);
        },
        nullptr);
    if (complete)
        pieceCounterLabel_->setText(
            counterText(countPieces(state_.squares, state_.board(), state_.style.PiecesList,
                                    state_.style.EnglishNotation, state_.fullDictionary)));
    diagramView_->refresh(diagram_.takeDirty());
    unsetCursor();
}

void MainWindow::commitBoardEdit() {
    setPositionText(squaresToFen(state_.squares, state_.board(), state_.style.PiecesList));
    if (action(QStringLiteral("recModeAction"))->isChecked()) {
        copyPosition();
        // Undoing this edit takes its row away as well.
        positionUndo_.noteHistoryRow(historyWindow()->rows().constLast());
    }
}

AddToBookWindow* MainWindow::addToBookWindow() {
    if (addToBookWindow_) return addToBookWindow_;
    addToBookWindow_ = new AddToBookWindow(state_, this);
    connect(addToBookWindow_, &AddToBookWindow::gameAdded, this, [this] {
        // The new game is the last of the list on show; it is shown at once.
        QScrollBar* games = bookPanel_->gameScrollBar();
        const QSignalBlocker quiet(games);
        games->setRange(1, std::max(1, state_.book.gameCount));
        games->setValue(state_.book.gameCount);
        bookPanel_->showGame();
    });
    return addToBookWindow_;
}

void MainWindow::showAddToBookWindow() {
    AddToBookWindow* window = addToBookWindow();
    window->setRows(historyWindow()->rows());
    placeBesideDiagram(*window, *this, *diagramView_);
    if (runAddToBookWindow)
        runAddToBookWindow(*window);
    else
        window->exec();
}

SearchWindow* MainWindow::searchWindow() {
    if (!searchWindow_) searchWindow_ = new SearchWindow(state_, this);
    return searchWindow_;
}

void MainWindow::searchBook() {
    SearchWindow* window = searchWindow();
    placeBesideDiagram(*window, *this, *diagramView_);
    if (runSearchWindow)
        runSearchWindow(*window);
    else
        window->exec();
    // The menu item's check mark tells a narrowed book, whatever the trigger did.
    if (window->searchDone) {
        window->searchDone = false;
        bookNarrowed_ = window->narrowed;
        state_.book.gameCount = static_cast<int32_t>(state_.book.gameIndex.size());
        bookPanel_->setNarrowed(bookNarrowed_);
        bookPanel_->resetGameScrollBar();
        focusPositionAtEnd();
    }
    action(QStringLiteral("searchAction"))->setChecked(bookNarrowed_);
}

HistoryWindow* MainWindow::historyWindow() {
    if (historyWindow_) return historyWindow_;
    historyWindow_ = new HistoryWindow(state_, this);
    setChildWindow(ChildWindow::History, historyWindow_);
    connect(historyWindow_, &HistoryWindow::rowSent, this, [this](const QString& board) {
        setPositionText(board);
        positionEdit_->end(false);
        bookPanel_->showMoveControls();
        activateWindow();
        positionEdit_->setFocus();
    });
    connect(historyWindow_, &HistoryWindow::addToBookRequested, this,
            &MainWindow::showAddToBookWindow);
    connect(historyWindow_, &HistoryWindow::cleared, this,
            [this] { action(QStringLiteral("undoRecAction"))->setEnabled(false); });
    return historyWindow_;
}

void MainWindow::showHistory() {
    HistoryWindow* window = historyWindow();
    placeBesideDiagram(*window, *this, *diagramView_);
    window->show();
    window->raise();
    window->activateWindow();
}

void MainWindow::switchRecMode() {
    QAction* rec = action(QStringLiteral("recModeAction"));
    // The menu item checks itself when triggered; the button's face follows.
    const bool on = rec->isChecked();
    const QPixmap& face = recModeFaces_[on ? 1 : 0];
    recModeButton_->setFaces(face, face);
    // Switching on records the position it starts from.
    if (on) copyPosition();
}

void MainWindow::undoRec() {
    HistoryWindow* history = historyWindow();
    if (history->rowCount() > 1) {
        setPositionText(rowForUndo(history->dropLastRow()));
    }
    positionEdit_->end(false);
}

void MainWindow::updateAddToBook() {
    const QString extension = state_.bookFile.right(4).toUpper();
    if (extension != QLatin1String(".FEN") && extension != QLatin1String(".PGN")) return;
    historyWindow()->setAddToBookEnabled(action(QStringLiteral("closeBookAction"))->isEnabled() &&
                                         !scanJob_ && historyWindow()->rowCount() > 0);
}

void MainWindow::newPosition() {
    setPositionText(QString());
    positionEdit_->setFocus();
}

void MainWindow::setStartPosition() {
    setPositionText(state_.style.StartPos);
    positionEdit_->end(false);
}

void MainWindow::refreshPosition() {
    setPositionText(squaresToFen(state_.squares, state_.board(), state_.style.PiecesList));
    positionEdit_->end(false);
}

void MainWindow::exitProgram() {
    close();
}

void MainWindow::showAbout() {
    AboutWindow about(state_.programFolder, this);
    about.exec();
}

void MainWindow::showHelp() {
    if (!helpWindow_) helpWindow_ = new HelpWindow(this);
    // The page ships beside the executable or with the other shipped files;
    // one in the program folder goes first.
    QString page;
    for (const QString& folder :
         {state_.programFolder, QCoreApplication::applicationDirPath() + u'/',
          state_.shippedFolder}) {
        if (!folder.isEmpty() && QFileInfo::exists(folder + QStringLiteral("marlith.html"))) {
            page = folder + QStringLiteral("marlith.html");
            break;
        }
    }
    if (page.isEmpty() || !helpWindow_->open(page)) {
        warn(QStringLiteral("Help not available!"));
        return;
    }
    placeBesideDiagram(*helpWindow_, *this, *diagramView_);
    helpWindow_->show();
    helpWindow_->raise();
    helpWindow_->activateWindow();
}

void MainWindow::editStyle() {
    setCursor(Qt::WaitCursor);
    state_.savedStyle = state_.style;
    StyleWindow* window = styleWindow();
    // The preview stays in sight, and the main window where the user put it.
    placeBesideDiagram(*window, *this, *diagramView_);
    if (runStyleWindow)
        runStyleWindow(*window);
    else
        window->exec();
    // The window edits the style in force and keeps what it wants in savedStyle.
    state_.style = state_.savedStyle;
    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;
    showStyleName();
    drawBoard();
    invalidatePainted(state_.squares, state_.board());
    buildBoard();
    drawPalette();
    unsetCursor();
}

StyleWindow* MainWindow::styleWindow() {
    if (styleWindow_) return styleWindow_;
    styleWindow_ = new StyleWindow(state_, diagram_, this);
    QStringList names;
    for (int i = 1; i < styleBox_->count(); ++i)
        names.append(styleBox_->itemText(i));
    styleWindow_->setStyleNames(names);
    styleWindow_->chooseFile = [this](ChooserMode mode) { return showChooser(mode); };
    connect(styleWindow_, &StyleWindow::redrawRequested, this, &MainWindow::redrawStyle);
    connect(styleWindow_, &StyleWindow::styleChosen, this, [this](const QString& name) {
        styleBox_->setCurrentIndex(styleBox_->findText(name, Qt::MatchFixedString));
        chooseStyle();
    });
    connect(styleWindow_, &StyleWindow::styleAdded, this,
            [this](const QString& name) { styleBox_->addItem(name); });
    connect(styleWindow_, &StyleWindow::styleRemoved, this, [this](const QString& name) {
        // The first entry, "CUSTOM", is no stored style.
        for (int i = 1; i < styleBox_->count(); ++i) {
            if (styleBox_->itemText(i).toUpper() == name.toUpper()) {
                styleBox_->removeItem(i);
                return;
            }
        }
    });
    connect(styleWindow_, &StyleWindow::sheetReset, this, [this] { diagram_.useBuiltInSheet(); });
    connect(styleWindow_, &StyleWindow::pictureResized, this, &MainWindow::resizePicture);
    return styleWindow_;
}

void MainWindow::redrawStyle() {
    drawBoard();
    invalidatePainted(state_.squares, state_.board());
    buildBoard();
}

void MainWindow::resizePicture(int widthTwips, int heightTwips) {
    diagram_.resizeImage(QSize(twipsToWholePixels(widthTwips), twipsToWholePixels(heightTwips)),
                         styleColor(state_.style.BackColor));
    diagramView_->refresh(diagram_.takeDirty());
    // The window grows with the picture, never shrinks with it.
    const int wantedWidth = twipsToWholePixels(widthTwips + 3285.0);
    const int wantedHeight = twipsToWholePixels(heightTwips + 1335.0);
    if (isNormalState(*this))
        resize(std::max(width(), wantedWidth), std::max(height(), wantedHeight));
}

void MainWindow::chooseStyle() {
    const QString s = styleBox_->currentText();
    if (s.toUpper() == QLatin1String("CUSTOM")) {
        editStyle();
        return;
    }
    state_.style.StyleName = s;
    readSettings();
    invalidatePainted(state_.squares, state_.board());
    const QString w = squaresToFen(state_.squares, state_.board(), state_.style.PiecesList);
    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;
    // The same position in the new style's letters and rows: no step of its own.
    flushTyping();
    positionUndo_.replaceCurrent(w);
    if (w != positionEdit_->text())
        positionEdit_->setText(w);
    else
        buildBoard();
    positionEdit_->end(false);
}

bool MainWindow::handleStyleKey(int key) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        chooseTypedStyle();
        return true;
    }
    if (key == Qt::Key_Escape) {
        restoreStyleText();
        return true;
    }
    return false;
}

void MainWindow::chooseTypedStyle() {
    const QString typed = styleBox_->currentText().toUpper();
    if (typed == QLatin1String("CUSTOM")) {
        editStyle();
        return;
    }
    for (int i = 0; i < styleBox_->count(); ++i) {
        if (styleBox_->itemText(i).toUpper() == typed) {
            styleBox_->setCurrentIndex(i);
            chooseStyle();
            return;
        }
    }
    styleBox_->setEditText(QString());
}

void MainWindow::restoreStyleText() {
    styleBox_->setEditText(styleBox_->currentIndex() >= 0
                               ? styleBox_->itemText(styleBox_->currentIndex())
                               : QString());
    positionEdit_->setFocus();
}

void MainWindow::readSettings() {
    const SettingsRead reading = marlith::readSettings(
        state_.programFolder + QLatin1String(kSettingsFileName), state_.programFolder, state_.style,
        state_.recentFile, state_.recentEngine, &keptSession_);
    state_.fullDictionary.clear();
    for (const QString& name : reading.styleNames)
        styleBox_->addItem(name);
    showRecentBooks();
    drawBoard();
    showStyleName();
    drawPalette();
}

void MainWindow::showStyleName() {
    // A name of the list selects its entry, as picking it would.
    const QString& name = state_.style.StyleName;
    const int index = name.isEmpty() ? -1 : styleBox_->findText(name, Qt::MatchFixedString);
    styleBox_->setCurrentIndex(index);
    styleBox_->setEditText(name);
}

void MainWindow::writeSettings() {
    flushTyping();
    KeptSession kept;
    kept.position = positionUndo_.current();
    kept.window = isNormalState(*this) ? QRect(pos(), size()) : normalGeometry();
    kept.popeyeFields = state_.popeyeFields;
    kept.exportChoices = state_.exportChoices;
    marlith::writeSettings(state_.programFolder, state_.recentFile, state_.recentEngine,
                           state_.style.StyleName, {}, &kept);
}

void MainWindow::addRecent(const QString& path) {
    marlith::addRecent(state_.recentFile, path);
    showRecentBooks();
}

void MainWindow::showRecentBooks() {
    const auto items = recentMenuItems(state_.recentFile);
    for (int i = 0; i < 4; ++i) {
        recentBookActions_[i]->setText(items[i].caption);
        recentBookActions_[i]->setVisible(items[i].visible);
    }
}

ViewWindow* MainWindow::viewWindow() {
    if (!viewWindow_) {
        viewWindow_ = new ViewWindow(state_, diagram_, diagramView_, this);
        connect(viewWindow_, &ViewWindow::returnedToPosition, this,
                &MainWindow::focusPositionAtEnd);
        connect(viewWindow_, &ViewWindow::pressDone, this, &MainWindow::moveCaretToEnd);
        connect(viewWindow_, &ViewWindow::boardEdited, this, &MainWindow::commitBoardEdit);
        setChildWindow(ChildWindow::View, viewWindow_);
    }
    return viewWindow_;
}

void MainWindow::drawPalette() {
    viewWindow()->drawPalette();
}

void MainWindow::showViewWindow() {
    ViewWindow* view = viewWindow();
    placeBesideDiagram(*view, *this, *diagramView_);
    view->show();
    view->raise();
}

void MainWindow::pressOnBoard(const BoardPress& press) {
    // Shift alone draws over the diagram; everything else edits.
    diagramView_->setCursor(isStroke(press) ? Qt::SizeAllCursor : Qt::CrossCursor);
}

void MainWindow::dragOnBoard(const BoardPress& press, double x, double y) {
    // A piece being dragged is not shown moving; only a stroke follows the mouse.
    if (isStroke(press)) followStroke(press, x, y);
}

GraphicWindow* MainWindow::graphicWindow() {
    if (graphicWindow_) return graphicWindow_;
    graphicWindow_ = new GraphicWindow(state_, this);
    setChildWindow(ChildWindow::Graphic, graphicWindow_);
    // "Clear Graphic" draws the diagram anew, which leaves no stroke.
    connect(graphicWindow_, &GraphicWindow::clearRequested, this, &MainWindow::redrawStyle);
    return graphicWindow_;
}

void MainWindow::showGraphicWindow() {
    GraphicWindow* window = graphicWindow();
    placeBesideDiagram(*window, *this, *diagramView_);
    window->show();
    window->raise();
    window->activateWindow();
}

void MainWindow::followStroke(const BoardPress& press, double x, double y) {
    const GraphicWindow* tools = graphicWindow();
    const StrokeEnds ends{QPointF(press.x, press.y), QPointF(x, y)};
    const Pen pen = tools->pen();
    if (tools->object() == StrokeObject::FreeHand) {
        // Free hand leaves a dot at each event, kept at once.
        diagram_.addStroke({StrokeObject::FreeHand, ends, 0, pen});
        diagramView_->refresh(diagram_.takeDirty());
        return;
    }
    const StrokeObject object = tools->object();
    const double radius = std::abs(ends.press.x() - x);
    diagramView_->setRubberBand([object, ends, radius, pen](QPainter& painter) {
        paintStroke(painter, object, ends, radius, pen);
    });
}

void MainWindow::finishStroke(const BoardPress& press, int button, double x, double y) {
    diagramView_->setRubberBand({});
    if (button != kLeftButton) return;
    const GraphicWindow* tools = graphicWindow();
    StrokeEnds ends{QPointF(press.x, press.y), QPointF(x, y)};
    // The radius comes from the drag as it was, before any snapping.
    const double radius = std::min(std::abs(ends.press.x() - x), 32767.0);
    if (tools->object() != StrokeObject::FreeHand)
        ends = snapStroke(ends, state_.style, tools->snapMode());
    diagram_.addStroke({tools->object(), ends, std::nearbyint(radius), tools->pen()});
    diagramView_->refresh(diagram_.takeDirty());
}

void MainWindow::releaseOnBoard(const BoardPress& press, int button, double x, double y) {
    diagramView_->update();
    if (isStroke(press)) finishStroke(press, button, x, y);
    const BoardEdit edit = editOnRelease(press, x, y, state_.squares, state_.style,
                                         state_.reversedBoard, state_.chosenPiece);
    if (edit.clicked) state_.clickedSquare = static_cast<int16_t>(edit.clickedSquare);
    if (edit.squaresChanged) commitBoardEdit();
    diagramView_->unsetCursor();
    focusPositionAtEnd();
    if (state_.clickedSquare >= 0 && !viewWindow()->isVisible()) {
        showViewWindow();
        viewWindow()->activateWindow();
        viewWindow()->paletteView()->setFocus();
    }
}

void MainWindow::loadBook() {
    // A file that can't be a book leaves the open book as it is.
    if (const QString refusal = bookFileRefusal(state_.bookFile); !refusal.isEmpty()) {
        warn(refusal);
        return;
    }
    if (scanJob_ || state_.book.isOpen()) closeBook();
    if (state_.style.WndHeight + 1350 < 5580 && isNormalState(*this))
        resize(width(), twipsToWholePixels(5580));
    bookPanel_->show();
    bookPanel_->setScanning(true);
    bookPanel_->setTitle(shortenPath(state_.bookFile, 15));
    addRecent(state_.bookFile);

    // The scan runs on a thread of its own with copies of what it needs, so
    // the window repaints, counts and can stop it.
    WorkFile work;
    work.open(state_.programFolder + state_.tempSeed + QStringLiteral(".tmp"));
    ScanJob::Scan scan = bookScanner(state_.bookFile, state_.style);
    if (holdBookScan) scan = holdBookScan(std::move(scan));
    scanJob_ = std::make_unique<ScanJob>(std::move(work), std::move(scan));
    action(QStringLiteral("searchAction"))->setEnabled(false);
    action(QStringLiteral("closeBookAction"))->setEnabled(true);
    action(QStringLiteral("stopScanAction"))->setEnabled(true);
    scanTimer_->start();
}

void MainWindow::pollBookScan() {
    // The timer runs only while there is a scan.
    bookPanel_->showCount(scanJob_->games());
    if (scanJob_->finished()) finishBookScan();
}

void MainWindow::stopBookScan() {
    if (scanJob_) scanJob_->stop();
}

void MainWindow::endBookScan() {
    scanTimer_->stop();
    scanJob_.reset();
    action(QStringLiteral("stopScanAction"))->setEnabled(false);
    bookPanel_->setScanning(false);
}

void MainWindow::finishBookScan() {
    auto [scan, work] = scanJob_->take();
    endBookScan();
    // No empty or made-up book opens.
    if (const QString refusal = bookScanRefusal(state_.bookFile, scan.end); !refusal.isEmpty()) {
        closeBook();
        warn(refusal);
        return;
    }
    OpenBook& book = state_.book;
    book.workFile = std::move(work);
    book.gameCount = scan.gameCount;
    book.recordCount = scan.recordCount;
    book.gameIndex = scan.gameIndex;
    book.fullIndex = std::move(scan.gameIndex);

    bookPanel_->resetGameScrollBar();
    action(QStringLiteral("searchAction"))->setEnabled(true);
    refreshPosition();
    bookNarrowed_ = false;
    bookPanel_->setNarrowed(false);
    action(QStringLiteral("searchAction"))->setChecked(false);
    if (historyWindow_) updateAddToBook();
    if (scan.end == ScanEnd::WriteFault)
        warn(QStringLiteral("The work file in %1 can't take more of the book (%2). The first %3 "
                            "games can be shown; the book itself was not changed.")
                 .arg(QDir::toNativeSeparators(state_.programFolder),
                      scan.writeError.isEmpty() ? QStringLiteral("it is too large")
                                                : scan.writeError)
                 .arg(book.gameCount));
    else if (scan.end == ScanEnd::GameLimit)
        warn(QStringLiteral("The book has more than %1 games: the first %1 can be shown.")
                 .arg(kMaxGameNumber));
}

void MainWindow::openBook() {
    const std::optional<QString> path = showChooser(ChooserMode::OpenBook);
    if (!path) return;
    state_.bookFile = *path;
    loadBook();
}

void MainWindow::closeBook() {
    if (scanJob_) endBookScan(); // stops the scan and waits for it
    state_.book.workFile.close();
    bookPanel_->hide();
    if (isNormalState(*this)) resize(width(), twipsToWholePixels(state_.style.WndHeight + 1350));
    action(QStringLiteral("searchAction"))->setEnabled(false);
    action(QStringLiteral("closeBookAction"))->setEnabled(false);
    if (historyWindow_) historyWindow_->setAddToBookEnabled(false);
}

void MainWindow::openRecentBook(int index) {
    if (index < 0 || index >= static_cast<int>(state_.recentFile.size())) return;
    state_.bookFile = state_.recentFile[index];
    loadBook();
}

void MainWindow::showPosition(const QString& board) {
    setPositionText(fillRows(board, state_.style.BorderWidth, state_.style.PiecesList));
}

void MainWindow::chooseStyleByName(const QString& name) {
    styleBox_->setEditText(name);
    chooseTypedStyle();
}

void MainWindow::toggleReversed() {
    const bool on = state_.reversedBoard == 0;
    state_.reversedBoard = on ? static_cast<int16_t>(state_.board().squares() + 1) : 0;
    // The red text is the user's sign that the board is shown turned.
    QPalette palette = positionEdit_->palette();
    palette.setColor(QPalette::Text, on ? QColor(255, 0, 0) : QColor(0, 0, 0));
    positionEdit_->setPalette(palette);
    action(QStringLiteral("reverseAction"))->setChecked(on);
    if (state_.style.ShowGrid == 1) drawBoard();
    invalidatePainted(state_.squares, state_.board());
    buildBoard();
}

void MainWindow::applyEffect(BoardEffect effect) {
    applyBoardEffect(state_.squares, state_.board(), effect);
    refreshPosition();
}

void MainWindow::copyHtml() {
    const QString text = htmlFragment(state_.squares, state_.board(), state_.style.PiecesList);
    auto* data = new QMimeData;
    data->setText(text);
    data->setHtml(text);
    QGuiApplication::clipboard()->clear();
    QGuiApplication::clipboard()->setMimeData(data);
}

void MainWindow::paintDiagram(QPainter& painter, bool transparent) const {
    diagram_.paint(painter, {state_.style, state_.squares, state_.board(), state_.reversedBoard},
                   transparent);
}

DiagramPicture MainWindow::diagramPicture() const {
    return {diagram_.image(),
            [this](QPainter& painter, bool transparent) { paintDiagram(painter, transparent); }};
}

void MainWindow::printDiagram() {
    const QString pdf = pagePdfPath(QStringLiteral("Marlith"), state_.programFolder);
    const PrintOutcome outcome =
        printPicture(pieceCounterLabel_->text() + positionEdit_->text(), diagramPicture(), pdf);
    if (outcome == PrintOutcome::ToFile) inform(pageWentTo(pdf));
}

void MainWindow::saveImage() {
    setCursor(Qt::WaitCursor);
    repaint();
    state_.imageFile = settleImageName(state_.imageFile);
    // The caption follows the name even when it can't be written, but the
    // user learns that the picture isn't there.
    if (!writeImageFile(diagramPicture(), state_.imageFile))
        warn(QStringLiteral("The picture could not be written to %1.").arg(state_.imageFile));
    setWindowTitle(QStringLiteral("Marlith - ") + state_.imageFile);
    unsetCursor();
}

void MainWindow::saveImageAs() {
    const std::optional<QString> path = showChooser(ChooserMode::SaveImage);
    if (!path) return;
    state_.imageFile = *path;
    saveImage();
}

void MainWindow::exportDiagram() {
    if (!exportWindow_) exportWindow_ = new ExportWindow(this);
    exportWindow_->setChoices(state_.exportChoices, diagram_.image().size());
    if (exportWindow_->exec() != QDialog::Accepted) return;
    state_.exportChoices = exportWindow_->choices();
    const ImageFormat format = state_.exportChoices.format;
    const QString suggested =
        exportFileName(QFileInfo(settleImageName(state_.imageFile)).fileName(), format);
    const std::optional<QString> path = showChooser(ChooserMode::SaveImage, suggested);
    if (!path) return;
    // The format chosen here wins over another image extension typed.
    const QString file = exportFileName(*path, format);
    setCursor(Qt::WaitCursor);
    const DiagramPicture picture = diagramPicture();
    if (!writeImageFile(picture, file,
                        exportPictureSize(state_.exportChoices, picture.screen.size())))
        warn(QStringLiteral("The picture could not be written to %1.").arg(file));
    unsetCursor();
}

void MainWindow::copyImage() {
    // Also as PNG and SVG bytes, for editors that paste only those.
    const DiagramPicture picture = diagramPicture();
    auto* mime = new QMimeData;
    mime->setImageData(picture.screen);
    mime->setData(QStringLiteral("image/png"), pngBytes(picture.screen));
    mime->setData(QStringLiteral("image/svg+xml"), diagramSvg(picture, 0, false));
    QGuiApplication::clipboard()->setMimeData(mime);
}

void MainWindow::copyPosition() {
    refreshPosition();
    const QString text = copiedPositionText(positionEdit_->text(), pieceCounterLabel_->text(),
                                            state_.style.CopyCounter);
    historyWindow()->addRow(text);
    action(QStringLiteral("undoRecAction"))->setEnabled(true);
    QGuiApplication::clipboard()->setText(text);
    updateAddToBook();
}

void MainWindow::pastePosition() {
    setPositionText(pastedPositionText(QGuiApplication::clipboard()->text(),
                                       state_.style.BorderWidth, state_.style.PiecesList,
                                       positionEdit_->maxLength()));
}

std::optional<QString> MainWindow::showChooser(ChooserMode mode, const QString& suggestedName) {
    if (!fileChooser_) {
        fileChooser_ = new FileChooser(state_, this);
        // Unloaded first of the child windows when the program stops.
        setChildWindow(ChildWindow::FileChooser, fileChooser_);
    }
    if (!runChooser) return fileChooser_->choose(mode, suggestedName);
    fileChooser_->setMode(mode, suggestedName);
    runChooser(*fileChooser_);
    return fileChooser_->choice();
}

void MainWindow::setChildWindow(ChildWindow role, QWidget* window) {
    if (role != ChildWindow::Count) childWindows_[static_cast<size_t>(role)] = window;
}

void MainWindow::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) takeChildWindowsAlong();
}

void MainWindow::takeChildWindowsAlong() {
    if (isMinimized()) {
        hiddenChildWindows_.clear();
        for (size_t i = 1; i < childWindows_.size(); ++i) {
            QWidget* window = childWindows_[i];
            if (window && window->isVisible()) {
                hiddenChildWindows_.push_back(window);
                window->hide();
            }
        }
    } else {
        for (QWidget* window : hiddenChildWindows_)
            window->show();
        hiddenChildWindows_.clear();
    }
}

bool MainWindow::menuShortcutWins(QKeyEvent* key, bool boxHasSelection) const {
    // An enabled menu shortcut goes before the text boxes' own use of the key
    // (Ctrl+C without a selection copies the position), but the editing keys
    // stay with the box.
    if (textBoxKeepsKey(key->keyCombination(), boxHasSelection)) return false;
    const QKeySequence pressed(key->keyCombination());
    for (const auto& [name, item] : actions_)
        if (item->isEnabled() && !item->shortcut().isEmpty() && item->shortcut() == pressed)
            return true;
    return false;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == styleBox_ && event->type() == QEvent::Wheel && !styleBox_->hasFocus())
        return true;
    // The style list hands the key to its line edit by a direct call, past
    // the line edit's filters: both are watched.
    if (event->type() == QEvent::ShortcutOverride &&
        (watched == positionEdit_ || watched == styleBox_ || watched == styleBox_->lineEdit())) {
        auto* key = static_cast<QKeyEvent*>(event);
        const QLineEdit* box = watched == positionEdit_ ? positionEdit_ : styleBox_->lineEdit();
        if (menuShortcutWins(key, box->hasSelectedText())) return true;
    }
    // The position box's own undo would fight the program's.
    if (watched == positionEdit_ && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->matches(QKeySequence::Undo) || key->matches(QKeySequence::Redo)) return true;
    }
    if (watched == styleBox_->lineEdit() && event->type() == QEvent::KeyPress)
        return handleStyleKey(static_cast<QKeyEvent*>(event)->key());
    if (watched == positionEdit_) {
        switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            handlePositionKeyDown(key->key());
            if (handlePositionKey(key->text(), key->key())) return true;
            break;
        }
        case QEvent::FocusIn:
            setFocusBorder(pieceCounterLabel_, true);
            break;
        case QEvent::FocusOut:
            setFocusBorder(pieceCounterLabel_, false);
            break;
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::handlePositionKeyDown(int key) {
    // End shows the text as far as its last piece; the key then moves the caret.
    if (key == Qt::Key_End) cutAfterLastPiece();
}

bool MainWindow::handlePositionKey(const QString& typed, int key) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        // The typed text and its canonical form are one step.
        const QString before = positionUndo_.current();
        flushTyping();
        const QString typed = positionUndo_.current();
        refreshPosition();
        if (typed != before && positionUndo_.current() != typed) positionUndo_.mergeLastTwo();
        updateUndoItems();
        return true;
    }
    if (key == Qt::Key_Escape) {
        setPositionText(QString());
        return true;
    }
    if (typed == QLatin1String("/")) {
        completeRow();
        return true;
    }
    return false;
}

void MainWindow::cutAfterLastPiece() {
    positionEdit_->setText(
        marlith::cutAfterLastPiece(positionEdit_->text(), state_.style.PiecesList));
    typingPause_->start(); // part of the typing
}

void MainWindow::completeRow() {
    const int caret = positionEdit_->hasSelectedText() ? positionEdit_->selectionStart()
                                                       : positionEdit_->cursorPosition();
    const RowCompletion completed = marlith::completeRow(
        positionEdit_->text(), caret, state_.style.BorderWidth, state_.style.PiecesList);
    positionEdit_->setText(completed.text);
    positionEdit_->setCursorPosition(completed.caret);
    typingPause_->start(); // part of the typing
}

} // namespace marlith
