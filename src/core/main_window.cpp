#include "core/main_window.h"

#include "books/book_panel.h"
#include "books/book_scan.h"
#include "books/pgn_board.h"
#include "chooser/file_chooser.h"
#include "core/about_window.h"
#include "core/help_window.h"
#include "core/settings.h"
#include "core/startup.h"
#include "core/style_list.h"
#include "core/tool_faces.h"
#include "core/tool_image.h"
#include "core/widget_geometry.h"
#include "drawing/diagram_view.h"
#include "drawing/view_window.h"
#include "editing/board_edit.h"
#include "output/image_output.h"

#include <QAction>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QGroupBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLockFile>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QTime>

namespace marlith {

namespace {

QFrame* SeparatorLine(QWidget* parent, int y, const QColor& colour) {
    auto* line = new QFrame(parent);
    line->setGeometry(0, y, 12000 / kTwipsPerPixel, 1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, colour);
    line->setPalette(palette);
    return line;
}

} // namespace

Form1::Form1(AppState& state, QWidget* parent) : QMainWindow(parent), state_(state) {
    setObjectName(QStringLiteral("Form1"));
    setWindowIcon(ProgramIcon());
    CreateControls();
    CreateMenus();
    PlaceControls();

    startInstance = [this](const QStringList& rest) {
        QProcess::startDetached(QCoreApplication::applicationFilePath(), rest,
                                state_.programFolder);
    };
    warn = [this](const QString& text) {
        QMessageBox::warning(this, QStringLiteral("Warning"), text);
    };
}

Form1::~Form1() = default;

void Form1::CreateControls() {
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("Form1Client"));
    setCentralWidget(central);

    SeparatorLine(central, 0, QColor(0xE0, 0xE0, 0xE0))->setObjectName(QStringLiteral("Line1"));
    SeparatorLine(central, 480 / kTwipsPerPixel, QColor(0x80, 0x80, 0x80))
        ->setObjectName(QStringLiteral("Line3"));

    label3_ = new QLabel(QStringLiteral("(0x0) "), central);
    label3_->setObjectName(QStringLiteral("Label3"));
    label3_->setAlignment(Qt::AlignCenter);
    text1_ = new QLineEdit(central);
    text1_->setObjectName(QStringLiteral("Text1"));
    text1_->installEventFilter(this);
    connect(text1_, &QLineEdit::textChanged, this, [this] { Build(); });

    // The tool strips. A strip takes the focus while one of its buttons is held.
    picture3_ = new QWidget(central);
    picture3_->setObjectName(QStringLiteral("Picture3"));
    picture3_->setFocusPolicy(Qt::ClickFocus);
    picture4_ = new QWidget(central);
    picture4_->setObjectName(QStringLiteral("Picture4"));
    picture4_->setFocusPolicy(Qt::ClickFocus);
    const auto faces3 = FirstStripFaces();
    const auto faces5 = SecondStripFaces();
    const auto faces8 = RecFaces();
    for (int i = 0; i < 9; ++i) {
        image4_[i] = new ToolImage(faces3[i], faces3[i + 9], picture3_);
        image4_[i]->setObjectName(QStringLiteral("Image4(%1)").arg(i));
        image7_[i] = new ToolImage(faces5[i], faces5[i + 9], picture4_);
        image7_[i]->setObjectName(QStringLiteral("Image7(%1)").arg(i));
    }
    image4_[8]->hide(); // shown when an engine is found
    image6_ = new ToolImage(faces8[0], faces8[1], picture4_);
    image6_->setObjectName(QStringLiteral("Image6"));

    auto* frame1 = new QGroupBox(QStringLiteral("Pieces Styles"), central);
    frame1->setObjectName(QStringLiteral("Frame1"));
    QFont bold = frame1->font();
    bold.setBold(true);
    frame1->setFont(bold);
    frame1->setGeometry(TwipRect(0, 1440, 3015, 735));
    combo1_ = new QComboBox(central);
    combo1_->setObjectName(QStringLiteral("Combo1"));
    combo1_->setEditable(true);
    combo1_->setInsertPolicy(QComboBox::NoInsert);
    combo1_->setMaxVisibleItems(20);
    combo1_->lineEdit()->installEventFilter(this);
    connect(combo1_, &QComboBox::activated, this, [this] { Combo1_Click(); });
    auto* command9 = new QPushButton(QStringLiteral("&View"), central);
    command9->setObjectName(QStringLiteral("Command9"));
    connect(command9, &QPushButton::clicked, this, &Form1::Command9_Click);
    command9->setGeometry(TwipRect(2160, 1680, 735, 315));
    combo1_->setGeometry(TwipRect(120, 1680, 1935, 315));

    frame2_ = new BookPanel(state_, *this, central);
    frame2_->setGeometry(TwipRect(0, 2280, 3015, 5775));
    frame2_->hide(); // the book panel, shown while a book is open

    picMain_ = new DiagramView(diagram_, central);
    picMain_->setFocusPolicy(Qt::TabFocus);
    connect(picMain_, &DiagramView::mouseDown, this, &Form1::PicMain_MouseDown);
    connect(picMain_, &DiagramView::mouseMove, this, &Form1::PicMain_MouseMove);
    connect(picMain_, &DiagramView::mouseUp, this, &Form1::PicMain_MouseUp);
    setTabOrder(text1_, combo1_);
    setTabOrder(combo1_, picMain_);
}

void Form1::PlaceControls() {
    label3_->setGeometry(TwipRect(0, 75, 855, 315));
    text1_->setGeometry(TwipRect(840, 75, 5655, 315));
    picture3_->setGeometry(TwipRect(0, 600, 3015, 340));
    picture4_->setGeometry(TwipRect(0, 960, 3015, 340));
    const int left4[9] = {0, 690, 980, 1400, 1680, 1970, 2250, 290, 2670};
    for (int i = 0; i < 9; ++i)
        image4_[i]->move(left4[i] / kTwipsPerPixel, 0);
    const QPoint at7[9] = {{0, 0},    {290, 0},  {690, 0},  {690, 143}, {985, 0},
                           {1122, 0}, {1400, 0}, {1680, 0}, {1970, 0}};
    for (int i = 0; i < 9; ++i)
        image7_[i]->move(at7[i].x() / kTwipsPerPixel, at7[i].y() / kTwipsPerPixel);
    image6_->move(2670 / kTwipsPerPixel, 0);
    picMain_->move(3120 / kTwipsPerPixel, 600 / kTwipsPerPixel);
}

void Form1::CreateMenus() {
    using Slot = void (Form1::*)();
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

    QMenu* file = addMenu(nullptr, "MNFile", "&File");
    addItems(file,
             {{"MNNew", "&New", ctrl(Qt::Key_N), true, &Form1::MNNew_Click},
              {"MNStart", "S&tart Position", ctrl(Qt::Key_T), true, &Form1::MNStart_Click},
              {"MNs1", "-", {}, true, nullptr},
              {"MNSave", "&Save Image", ctrl(Qt::Key_S), true, &Form1::MNSave_Click},
              {"MNSaveAs", "Save Image &As...", ctrl(Qt::Key_A), true, &Form1::MNSaveAs_Click},
              {"MNs2", "-", {}, true, nullptr},
              {"MNLoad", "Open &Book", ctrl(Qt::Key_B), true, &Form1::MNLoad_Click},
              {"MNCriteria", "&Criteria", ctrl(Qt::Key_F), false, nullptr},
              {"MNClose", "Cl&ose book", ctrl(Qt::Key_O), false, &Form1::MNClose_Click},
              {"MNs6", "-", {}, true, nullptr},
              {"MNPrint", "&Print", ctrl(Qt::Key_P), true, nullptr},
              {"MNs3", "-", {}, true, nullptr}});
    for (int i = 0; i < 4; ++i) {
        mnFileList_[i] = file->addAction(QString());
        mnFileList_[i]->setObjectName(QStringLiteral("MNFileList(%1)").arg(i));
        mnFileList_[i]->setVisible(false);
        connect(mnFileList_[i], &QAction::triggered, this, [this, i] { MNFileList_Click(i); });
        actions_[mnFileList_[i]->objectName()] = mnFileList_[i];
    }
    addItems(file, {{"MNs7", "-", {}, true, nullptr},
                    {"MNExit", "E&xit", ctrl(Qt::Key_X), true, &Form1::MNExit_Click}});

    QMenu* edit = addMenu(nullptr, "MNEdit", "&Edit");
    addItems(edit, {{"MNRefresh", "Refre&sh = <Enter>", {}, true, &Form1::MNRefresh_Click}});
    QMenu* copy = addMenu(edit, "MNCopy", "Cop&y");
    addItems(copy, {{"MNMarlith", "&Marlith", ctrl(Qt::Key_C), true, &Form1::MNMarlith_Click},
                    {"MNPicture", "&Image", ctrl(Qt::Key_I), true, &Form1::MNPicture_Click},
                    {"MNHtml", "HTM&L", ctrl(Qt::Key_L), true, nullptr}});
    addItems(edit, {{"MNPaste", "&Paste Marlith", ctrl(Qt::Key_V), true, &Form1::MNPaste_Click},
                    {"MNs4", "-", {}, true, nullptr},
                    {"MNHistory", "&History", ctrl(Qt::Key_H), true, nullptr},
                    {"MNRec", "Rec &Mode", ctrl(Qt::Key_M), true, nullptr},
                    {"MNUndo", "&Undo Rec", ctrl(Qt::Key_Z), false, nullptr},
                    {"MNs9", "-", {}, true, nullptr}});
    QMenu* effects = addMenu(edit, "MNEffects", "E&ffects");
    addItems(effects, {{"MNReverse", "&Reverse", ctrl(Qt::Key_R), true, nullptr},
                       {"MNHMirror", "Hori&zontal Mirror", QKeySequence(Qt::Key_F2), true, nullptr},
                       {"MNDMirror", "Dia&gonal Mirror", QKeySequence(Qt::Key_F3), true, nullptr},
                       {"MNRotate", "R&otate 90°", QKeySequence(Qt::Key_F4), true, nullptr},
                       {"MNLeft", "Move L&eft", QKeySequence(Qt::Key_F5), true, nullptr},
                       {"MNRight", "Move R&ight", QKeySequence(Qt::Key_F6), true, nullptr},
                       {"MNUp", "Mo&ve Up", QKeySequence(Qt::Key_F7), true, nullptr},
                       {"MNDown", "Move &Down", QKeySequence(Qt::Key_F8), true, nullptr}});
    addItems(edit, {{"MNGraphic", "&Graphic", ctrl(Qt::Key_G), true, nullptr},
                    {"MNstyle", "Styl&e", ctrl(Qt::Key_E), true, &Form1::MNstyle_Click}});

    QMenu* engines = addMenu(nullptr, "MNEngines", "En&gines");
    addItems(engines, {{"MNpy", "Pope&ye", ctrl(Qt::Key_Y), true, &Form1::MNpy_Click},
                       {"MNCrafty", "&Crafty", ctrl(Qt::Key_K), true, &Form1::MNCrafty_Click}});

    QMenu* help = addMenu(nullptr, "MNHelp", "&Help");
    addItems(help, {{"MNContents", "&Contents", {}, true, &Form1::MNContents_Click},
                    {"MNs12", "-", {}, true, nullptr},
                    {"MNAbout", "&About...", {}, true, &Form1::MNAbout_Click}});

    // The tool buttons run the commands of their menu items.
    const char* strip3[9] = {"MNSave",    "MNGraphic", "MNHistory", "MNPicture", "MNHtml",
                             "MNMarlith", "MNPaste",   "MNPrint",   nullptr};
    const char* strip4[9] = {"MNNew",  "MNStart",  "MNRight",   "MNLeft",   "MNUp",
                             "MNDown", "MNRotate", "MNHMirror", "MNDMirror"};
    for (int i = 0; i < 9; ++i) {
        const bool opensWindow = i == 1 || i == 2 || i == 8;
        std::function<void()> command;
        if (strip3[i]) {
            QAction* menuItem = actions_.at(QLatin1String(strip3[i]));
            command = [menuItem] { menuItem->trigger(); };
        } else {
            command = [this] {
                const QString engine = state_.recentEngine.toUpper();
                if (engine == QLatin1String("POPEYE"))
                    action(QStringLiteral("MNpy"))->trigger();
                else if (engine == QLatin1String("CRAFTY"))
                    action(QStringLiteral("MNCrafty"))->trigger();
            };
        }
        connect(image4_[i], &ToolImage::clicked, this,
                [this, command, opensWindow] { ToolClicked(command, opensWindow); });
        QAction* menuItem7 = actions_.at(QLatin1String(strip4[i]));
        connect(image7_[i], &ToolImage::clicked, this,
                [this, menuItem7] { ToolClicked([menuItem7] { menuItem7->trigger(); }, false); });
    }
}

QAction* Form1::action(const QString& name) const {
    const auto found = actions_.find(name);
    return found == actions_.end() ? nullptr : found->second;
}

void Form1::ToolClicked(const std::function<void()>& command, bool keepsFocus) {
    // A command that the user started from a button runs even where its menu
    // item is disabled only if the item allows it: QAction::trigger checks.
    command();
    if (!keepsFocus) CaretToText1();
}

void Form1::CaretToText1() {
    text1_->end(false);
    text1_->setFocus();
}

void Form1::MoveCaretToEnd() {
    text1_->end(false);
}

void Form1::Form_Load(const QStringList& arguments) {
    const QString folder = ProgramFolderFrom(qEnvironmentVariable("MARLITH_HOME"),
                                             QCoreApplication::applicationDirPath());
    // Another instance holds the lock while it runs.
    instanceLock_ = std::make_unique<QLockFile>(folder + QStringLiteral("Marlith.lock"));
    instanceLock_->setStaleLockTime(0);
    state_.prevInstanceFlag = instanceLock_->tryLock(0) ? 0 : 1;

    state_.tempSeed = MakeTempSeed(QTime::currentTime().msecsSinceStartOfDay());
    state_.programFolder = folder;
    QDir::setCurrent(folder);

    combo1_->clear();
    combo1_->addItem(QStringLiteral("CUSTOM"));

    state_.imageFile = QStringLiteral("Marlith.bmp");
    state_.keepForms = -1;
    state_.clickedSquare = -1;
    state_.viewPiece = -1;
    state_.pressX = -1.0f;
    state_.pressY = -1.0f;
    setWindowTitle(QStringLiteral("Marlith - Marlith.bmp"));

    ReadSettings();
    DetectEngines();

    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;

    QStringList names;
    for (int i = 1; i < combo1_->count(); ++i)
        names << combo1_->itemText(i);
    names = SortStyleNames(names);
    for (int i = 0; i < names.size(); ++i)
        combo1_->setItemText(i + 1, names[i]);
    ShowStyleName();

    ResetVet(state_.vet, state_.board());
    Build();

    const CommandLine line = SplitCommandLine(arguments);
    if (!line.rest.isEmpty() && startInstance) startInstance(line.rest);
    state_.bookFile = line.bookFile;
    if (!state_.bookFile.isEmpty()) CmdLoad();

    text1_->setFocus();
}

void Form1::closeEvent(QCloseEvent* event) {
    Form_QueryUnload();
    Form_Unload();
    event->accept();
}

void Form1::Form_QueryUnload() {
    state_.keepForms = 0;
    for (QWidget* window : childWindows_)
        if (window) window->close();
    if (helpWindow_) helpWindow_->close();
}

void Form1::Form_Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    if (state_.programFolder.isEmpty()) return;
    WriteSettings();
    DeleteTempFiles(state_.programFolder);
    EngineCleanUp();
    if (instanceLock_) instanceLock_->unlock();
}

void Form1::DrawBoard() {
    const Diagram::Outcome outcome =
        diagram_.DrawBoard(state_.style, state_.reversedBoard, state_.programFolder);
    // Rotation and the diagonal mirror are offered on square boards only.
    action(QStringLiteral("MNRotate"))->setEnabled(outcome.squareBoard);
    action(QStringLiteral("MNDMirror"))->setEnabled(outcome.squareBoard);
    image7_[6]->setVisible(outcome.squareBoard);
    image7_[8]->setVisible(outcome.squareBoard);
    picMain_->refresh(diagram_.takeDirty());
    if (!IsNormalState(*this)) return;
    const QSize twips = MainWindowSize(state_.style, frame2_->isVisible());
    resize(TwipToPixInt(twips.width()), TwipToPixInt(twips.height()));
}

void Form1::Build() {
    setCursor(Qt::WaitCursor);
    PieceCount count;
    const bool complete = marlith::Build(
        text1_->text(), state_.vet, state_.board(), state_.style.PiecesList,
        [this](int cell, int casa) {
            diagram_.PutPeca(cell, casa, state_.style, state_.reversedBoard);
        },
        &count);
    if (complete) label3_->setText(CounterText(count));
    picMain_->refresh(diagram_.takeDirty());
    unsetCursor();
}

void Form1::PicMove() {
    text1_->setText(VetToFEN(state_.vet, state_.board(), state_.style.PiecesList));
}

void Form1::MNNew_Click() {
    text1_->clear();
    text1_->setFocus();
}

void Form1::MNStart_Click() {
    text1_->setText(state_.style.StartPos);
    text1_->end(false);
}

void Form1::MNRefresh_Click() {
    text1_->setText(VetToFEN(state_.vet, state_.board(), state_.style.PiecesList));
    text1_->end(false);
}

void Form1::MNExit_Click() {
    close();
}

void Form1::MNAbout_Click() {
    Form2 about(this);
    about.exec();
}

void Form1::MNContents_Click() {
    if (!helpWindow_) helpWindow_ = new HelpWindow(this);
    if (!helpWindow_->open(state_.programFolder + QStringLiteral("marlith.html"))) {
        warn(QStringLiteral("Help not available!"));
        return;
    }
    helpWindow_->show();
    helpWindow_->raise();
    helpWindow_->activateWindow();
}

void Form1::MNstyle_Click() {
    setCursor(Qt::WaitCursor);
    state_.savedStyle = state_.style;
    // The Style window edits the style here and keeps what it wants in savedStyle.
    state_.style = state_.savedStyle;
    ShowStyleName();
    DrawBoard();
    ResetVet(state_.vet, state_.board());
    Build();
    DrawView();
    unsetCursor();
}

void Form1::Combo1_Click() {
    const QString s = combo1_->currentText();
    if (s.toUpper() == QLatin1String("CUSTOM")) {
        MNstyle_Click();
        return;
    }
    state_.style.StyleName = s;
    ReadSettings();
    ResetVet(state_.vet, state_.board());
    const QString w = VetToFEN(state_.vet, state_.board(), state_.style.PiecesList);
    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;
    if (w != text1_->text())
        text1_->setText(w);
    else
        Build();
    text1_->end(false);
}

bool Form1::Combo1_KeyPress(int key) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        const QString typed = combo1_->currentText().toUpper();
        if (typed == QLatin1String("CUSTOM")) {
            MNstyle_Click();
            return true;
        }
        for (int i = 0; i < combo1_->count(); ++i) {
            if (combo1_->itemText(i).toUpper() == typed) {
                combo1_->setCurrentIndex(i);
                Combo1_Click();
                return true;
            }
        }
        combo1_->setEditText(QString());
        return true;
    }
    if (key == Qt::Key_Escape) {
        combo1_->setEditText(
            combo1_->currentIndex() >= 0 ? combo1_->itemText(combo1_->currentIndex()) : QString());
        text1_->setFocus();
        return true;
    }
    return false;
}

void Form1::ReadSettings() {
    const SettingsRead reading = marlith::ReadSettings(
        state_.programFolder + QLatin1String(kSettingsFileName), state_.programFolder, state_.style,
        state_.recentFile, state_.recentEngine);
    state_.fullDictionary.clear();
    for (const QString& name : reading.styleNames)
        combo1_->addItem(name);
    ShowFileList();
    DrawBoard();
    ShowStyleName();
    DrawView();
}

void Form1::ShowStyleName() {
    // A name of the list selects its entry, as picking it would.
    const QString& name = state_.style.StyleName;
    const int index = name.isEmpty() ? -1 : combo1_->findText(name, Qt::MatchFixedString);
    combo1_->setCurrentIndex(index);
    combo1_->setEditText(name);
}

void Form1::WriteSettings() {
    marlith::WriteSettings(state_.programFolder, state_.recentFile, state_.recentEngine,
                           state_.style.StyleName);
}

void Form1::AddRecent(const QString& path) {
    marlith::AddRecent(state_.recentFile, path);
    ShowFileList();
}

void Form1::ShowFileList() {
    const auto items = RecentMenuItems(state_.recentFile);
    for (int i = 0; i < 4; ++i) {
        mnFileList_[i]->setText(items[i].caption);
        mnFileList_[i]->setVisible(items[i].visible);
    }
}

Form6* Form1::form6() {
    if (!form6_) {
        form6_ = new Form6(state_, *this);
        setChildWindow(6, form6_);
    }
    return form6_;
}

void Form1::DrawView() {
    form6()->DrawView();
}

void Form1::Command9_Click() {
    Form6* view = form6();
    if (!view->isVisible()) {
        // A small floating window beside the main one.
        view->move(frameGeometry().topRight() + QPoint(8, 0));
    }
    view->show();
    view->raise();
}

void Form1::PicMain_MouseDown(int button, int shift, double x, double y) {
    if (state_.pressX >= 0 && state_.pressY >= 0)
        return; // a second button while one is held belongs to the first press
    state_.pressX = static_cast<float>(x);
    state_.pressY = static_cast<float>(y);
    state_.pressButton = static_cast<int16_t>(button);
    state_.pressShift = static_cast<int16_t>(shift);
    // Shift alone draws over the diagram; everything else edits.
    picMain_->setCursor(shift == kMaskShift ? Qt::SizeAllCursor : Qt::CrossCursor);
}

void Form1::PicMain_MouseMove(int, int, double, double) {
    // A piece being dragged is not shown moving; only a stroke follows the mouse.
}

void Form1::PicMain_MouseUp(int, int, double x, double y) {
    if (state_.pressX < 0 || state_.pressY < 0) return;
    picMain_->update();
    const BoardPress press{state_.pressX, state_.pressY, state_.pressButton, state_.pressShift};
    const BoardEdit edit = ReleaseOnBoard(press, x, y, state_.vet, state_.style,
                                          state_.reversedBoard, state_.viewPiece);
    if (edit.clicked) state_.clickedSquare = static_cast<int16_t>(edit.clickedSquare);
    if (edit.picMove) PicMove();
    picMain_->unsetCursor();
    state_.pressX = -1.0f;
    state_.pressY = -1.0f;
    CaretToText1();
    if (state_.clickedSquare >= 0 && !form6()->isVisible()) {
        Command9_Click();
        form6()->activateWindow();
        form6()->picture1()->setFocus();
    }
}

void Form1::CmdLoad() {
    setCursor(Qt::WaitCursor);
    if (state_.book.isOpen()) MNClose_Click();
    if (state_.style.WndHeight + 1350 < 5580 && IsNormalState(*this))
        resize(width(), TwipToPixInt(5580));
    frame2_->show();
    repaint();

    OpenBook& book = state_.book;
    book.work.open(state_.programFolder + state_.tempSeed + QStringLiteral(".tmp"));
    const QString extension = state_.bookFile.right(4).toUpper();
    const ScanProgress progress = [this](int32_t games) { frame2_->ShowCount(games); };
    BookScan scan;
    if (extension == QLatin1String(".PBM"))
        scan = ScanPBM(state_.bookFile, book.work, state_.style.BorderHeight,
                       state_.style.BorderWidth, state_.style.PiecesList, progress);
    else if (extension == QLatin1String(".EPD"))
        scan = ScanEPD(state_.bookFile, book.work, progress);
    else if (extension == QLatin1String(".PGN")) {
        StylePgnBoard board(state_.style);
        scan =
            ScanPGN(state_.bookFile, book.work, board, state_.style.StartPos.toLatin1(), progress);
    } else
        scan = ScanFEN(state_.bookFile, book.work, progress);
    book.gameCount = scan.gameCount;
    book.recordCount = scan.recordCount;
    book.gameIndex = scan.gameIndex;
    book.fullIndex = scan.fullIndex;

    AddRecent(state_.bookFile);
    frame2_->SetHScroll();
    frame2_->setTitle(CutName(state_.bookFile, 15));
    action(QStringLiteral("MNCriteria"))->setEnabled(true);
    action(QStringLiteral("MNClose"))->setEnabled(true);
    MNRefresh_Click();
    frame2_->SetNarrowed(false);
    action(QStringLiteral("MNCriteria"))->setChecked(false);
    unsetCursor();
}

void Form1::MNLoad_Click() {
    QString path;
    if (!ShowChooser(1, path)) return;
    state_.bookFile = path;
    CmdLoad();
}

void Form1::MNClose_Click() {
    state_.book.work.close();
    frame2_->hide();
    if (IsNormalState(*this)) resize(width(), TwipToPixInt(state_.style.WndHeight + 1350));
    action(QStringLiteral("MNCriteria"))->setEnabled(false);
    action(QStringLiteral("MNClose"))->setEnabled(false);
}

void Form1::MNFileList_Click(int index) {
    if (index < 0 || index >= static_cast<int>(state_.recentFile.size())) return;
    state_.bookFile = state_.recentFile[index];
    CmdLoad();
}

void Form1::ShowPosition(const QString& board) {
    text1_->setText(FillRows(board, state_.style.BorderWidth, state_.style.PiecesList));
}

void Form1::ChooseStyleByName(const QString& name) {
    combo1_->setEditText(name);
    Combo1_KeyPress(Qt::Key_Return);
}

void Form1::CmdSave() {
    setCursor(Qt::WaitCursor);
    repaint();
    state_.imageFile = SettleImageName(state_.imageFile);
    // A name that can't be written is no error: the caption still follows.
    SaveBitmap(diagram_.image(), state_.imageFile);
    setWindowTitle(QStringLiteral("Marlith - ") + state_.imageFile);
    unsetCursor();
}

void Form1::MNSave_Click() {
    CmdSave();
}

void Form1::MNSaveAs_Click() {
    QString path;
    if (!ShowChooser(0, path)) return;
    state_.imageFile = path;
    CmdSave();
}

void Form1::MNPicture_Click() {
    QGuiApplication::clipboard()->setImage(diagram_.image());
}

void Form1::MNMarlith_Click() {
    MNRefresh_Click();
    const QString text =
        CopiedPositionText(text1_->text(), label3_->text(), state_.style.CopyCounter);
    QGuiApplication::clipboard()->setText(text);
}

void Form1::MNPaste_Click() {
    text1_->setText(PastedPositionText(QGuiApplication::clipboard()->text(),
                                       state_.style.BorderWidth, state_.style.PiecesList,
                                       text1_->maxLength()));
}

bool Form1::ShowChooser(int mode, QString& path) {
    if (!winSeek_) {
        winSeek_ = new WinSeek(state_, this);
        // Unloaded first of the child windows when the program stops.
        setChildWindow(0, winSeek_);
    }
    state_.seekMode = static_cast<int16_t>(mode);
    if (runChooser)
        runChooser(*winSeek_);
    else
        winSeek_->exec();
    if (state_.seekMode != 1) return false;
    path = winSeek_->text2();
    return true;
}

void Form1::setChildWindow(int number, QWidget* window) {
    if (number >= 0 && number < static_cast<int>(childWindows_.size()))
        childWindows_[number] = window;
}

void Form1::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange) Form_Resize();
}

void Form1::Form_Resize() {
    if (isMinimized()) {
        hiddenForms_.clear();
        for (const int number : {3, 6, 7, 8, 9}) {
            QWidget* window = childWindows_[number];
            if (window && window->isVisible()) {
                hiddenForms_ += QString::number(number);
                window->hide();
            }
        }
    } else if (!hiddenForms_.isEmpty()) {
        for (const QChar digit : hiddenForms_)
            if (QWidget* window = childWindows_[digit.digitValue()]) window->show();
        hiddenForms_.clear();
    }
}

bool Form1::MenuShortcutWins(QKeyEvent* key) const {
    // As in the menus of old, an enabled menu shortcut goes before the text
    // boxes' own use of the key (Ctrl+C copies the position, not the text).
    const QKeySequence pressed(key->keyCombination());
    for (const auto& [name, item] : actions_)
        if (item->isEnabled() && !item->shortcut().isEmpty() && item->shortcut() == pressed)
            return true;
    return false;
}

bool Form1::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        (watched == text1_ || watched == combo1_->lineEdit()) &&
        MenuShortcutWins(static_cast<QKeyEvent*>(event)))
        return true;
    if (watched == combo1_->lineEdit() && event->type() == QEvent::KeyPress)
        return Combo1_KeyPress(static_cast<QKeyEvent*>(event)->key());
    if (watched == text1_) {
        switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            Text1_KeyDown(key->key());
            if (Text1_KeyPress(key->text(), key->key())) return true;
            break;
        }
        case QEvent::FocusIn:
            SetFocusBorder(label3_, true);
            break;
        case QEvent::FocusOut:
            SetFocusBorder(label3_, false);
            break;
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

void Form1::Text1_KeyDown(int key) {
    // End shows the text as far as its last piece; the key then moves the caret.
    if (key == Qt::Key_End)
        text1_->setText(CutAfterLastPiece(text1_->text(), state_.style.PiecesList));
}

bool Form1::Text1_KeyPress(const QString& typed, int key) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) {
        MNRefresh_Click();
        return true;
    }
    if (key == Qt::Key_Escape) {
        text1_->clear();
        return true;
    }
    if (typed == QLatin1String("/")) {
        const int s =
            text1_->hasSelectedText() ? text1_->selectionStart() : text1_->cursorPosition();
        const RowCompletion completed =
            CompleteRow(text1_->text(), s, state_.style.BorderWidth, state_.style.PiecesList);
        text1_->setText(completed.text);
        text1_->setCursorPosition(completed.caret);
        return true;
    }
    return false;
}

} // namespace marlith
