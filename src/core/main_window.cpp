#include "core/main_window.h"

#include "core/startup.h"
#include "drawing/diagram_view.h"

#include <QAction>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLockFile>
#include <QProcess>
#include <QTime>

namespace marlith {

namespace {

// Design positions are twips; a widget's pixels are twips / 15.
QRect TwipRect(int left, int top, int width, int height) {
    return QRect(left / kTwipsPerPixel, top / kTwipsPerPixel, width / kTwipsPerPixel,
                 height / kTwipsPerPixel);
}

void SetCounterBorder(QLabel* label, bool on) {
    label->setFrameStyle(on ? QFrame::Box | QFrame::Plain : QFrame::NoFrame);
}

} // namespace

Form1::Form1(AppState& state, QWidget* parent) : QMainWindow(parent), state_(state) {
    setObjectName(QStringLiteral("Form1"));
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("Form1Client"));
    setCentralWidget(central);

    text1_ = new QLineEdit(central);
    text1_->setObjectName(QStringLiteral("Text1"));
    label3_ = new QLabel(QStringLiteral("(0x0) "), central);
    label3_->setObjectName(QStringLiteral("Label3"));
    label3_->setAlignment(Qt::AlignCenter);
    picMain_ = new DiagramView(diagram_, central);
    PlaceControls();
    setTabOrder(text1_, picMain_);

    text1_->installEventFilter(this);
    connect(text1_, &QLineEdit::textChanged, this, [this] { Build(); });

    auto addCommand = [this](const char* name, const QKeySequence& keys, void (Form1::*slot)()) {
        auto* action = new QAction(this);
        action->setObjectName(QLatin1String(name));
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, slot);
        addAction(action);
    };
    addCommand("MNNew", QKeySequence(Qt::CTRL | Qt::Key_N), &Form1::MNNew_Click);
    addCommand("MNStart", QKeySequence(Qt::CTRL | Qt::Key_T), &Form1::MNStart_Click);

    startInstance = [this](const QStringList& rest) {
        QProcess::startDetached(QCoreApplication::applicationFilePath(), rest,
                                state_.programFolder);
    };
}

Form1::~Form1() = default;

void Form1::PlaceControls() {
    label3_->setGeometry(TwipRect(0, 75, 855, 315));
    text1_->setGeometry(TwipRect(840, 75, 5655, 315));
    picMain_->move(3120 / kTwipsPerPixel, 600 / kTwipsPerPixel);
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

    state_.imageFile = QStringLiteral("Marlith.bmp");
    state_.keepForms = -1;
    state_.clickedSquare = -1;
    state_.viewPiece = -1;
    state_.pressX = -1.0f;
    state_.pressY = -1.0f;
    setWindowTitle(QStringLiteral("Marlith - Marlith.bmp"));

    // With no settings the program comes up in the default style.
    ResetStyle(state_.style);
    state_.fullDictionary.clear();
    DrawBoard();

    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;

    ResetVet(state_.vet, state_.board());
    Build();

    const CommandLine line = SplitCommandLine(arguments);
    if (!line.rest.isEmpty() && startInstance) startInstance(line.rest);
    state_.bookFile = line.bookFile;

    text1_->setFocus();
}

void Form1::closeEvent(QCloseEvent* event) {
    Form_QueryUnload();
    Form_Unload();
    event->accept();
}

void Form1::Form_QueryUnload() {
    state_.keepForms = 0;
}

void Form1::Form_Unload() {
    if (unloaded_) return;
    unloaded_ = true;
    if (!state_.programFolder.isEmpty()) DeleteTempFiles(state_.programFolder);
    if (instanceLock_) instanceLock_->unlock();
}

void Form1::DrawBoard() {
    diagram_.DrawBoard(state_.style, state_.reversedBoard, state_.programFolder);
    picMain_->refresh(diagram_.takeDirty());
    if (windowState() & (Qt::WindowMinimized | Qt::WindowMaximized | Qt::WindowFullScreen)) return;
    const QSize twips = MainWindowSize(state_.style, false);
    resize(TwipToPixInt(twips.width()), TwipToPixInt(twips.height()));
}

void Form1::Build() {
    setCursor(Qt::WaitCursor);
    const Style& style = state_.style;
    PieceCount count;
    const bool complete = marlith::Build(
        text1_->text(), state_.vet, state_.board(), style.PiecesList,
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

bool Form1::eventFilter(QObject* watched, QEvent* event) {
    if (watched == text1_) {
        switch (event->type()) {
        case QEvent::KeyPress: {
            auto* key = static_cast<QKeyEvent*>(event);
            Text1_KeyDown(key->key());
            if (Text1_KeyPress(key->text(), key->key())) return true;
            break;
        }
        case QEvent::FocusIn:
            SetCounterBorder(label3_, true);
            break;
        case QEvent::FocusOut:
            SetCounterBorder(label3_, false);
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
