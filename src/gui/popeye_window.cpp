#include "gui/popeye_window.h"

#include "books/new_file.h"

#include "core/app_state.h"
#include "gui/widget_geometry.h"
#include "position/piece_listing.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>

namespace marlith {

namespace {

constexpr qint64 kRowsShownMs = 250;

const char* const kCaptions[PopeyeFields::kCount] = {
    "Stipulation ", "Moves ",     "Conditions ",  "Options ", "Twins ", "ZeroPosition ",
    "White pcs ",   "Black pcs ", "Neutral pcs ", "Command ", "Maxmem "};

QFrame* rule(QWidget* parent, const char* name, int y, const QColor& colour) {
    auto* line = new QFrame(parent);
    line->setObjectName(QLatin1String(name));
    line->setGeometry(0, twipsToWholePixels(y), twipsToWholePixels(4440), 1);
    line->setAutoFillBackground(true);
    QPalette palette = line->palette();
    palette.setColor(QPalette::Window, colour);
    line->setPalette(palette);
    return line;
}

// The field and its box show `text`.
void showParam(QString& field, QComboBox* box, const QString& text) {
    field = text;
    box->setEditText(text);
}

QString cutTrailingBlanks(QString text) {
    while (text.endsWith(QLatin1Char(' ')))
        text.chop(1);
    return text;
}

// The fields' names, in the order of the Popeye parameters: each has a
// label "<name>Label" and a box "<name>Box".
constexpr const char* kParamNames[PopeyeFields::kCount] = {
    "stipulation", "moves",       "conditions",    "options", "twins", "zeroPosition",
    "whitePieces", "blackPieces", "neutralPieces", "command", "maxMem"};

} // namespace

PopeyeWindow::PopeyeWindow(AppState& state, QWidget* parent)
    : EngineWindow(state, parent, QStringLiteral("popeyeWindow"), QStringLiteral("Popeye")) {
    resize(twipsToWholePixels(8565), twipsToWholePixels(4170));

    QPalette red = palette();
    red.setColor(QPalette::WindowText, QColor(0xFF, 0, 0));
    for (size_t i = 0; i < PopeyeFields::kCount; ++i) {
        auto* label = new QLabel(QString::fromUtf8(kCaptions[i]), this);
        label->setObjectName(QLatin1String(kParamNames[i]) + QStringLiteral("Label"));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* combo = new QComboBox(this);
        combo->setObjectName(QLatin1String(kParamNames[i]) + QStringLiteral("Box"));
        combo->setEditable(true);
        combo->setInsertPolicy(QComboBox::NoInsert);
        combo->setCompleter(nullptr);
        combo->addItems(state_.popeyeLists.box(i));
        combo->setCurrentIndex(-1);
        // The fields of the last session come back.
        combo->setEditText(state_.popeyeFields.box(i));
        if (i == 0) {
            label->setGeometry(twipsRect(0, 40, 975, 315));
            combo->setGeometry(twipsRect(960, 40, 1815, 315));
        } else if (i == 1) {
            label->setGeometry(twipsRect(3000, 45, 735, 315));
            combo->setGeometry(twipsRect(3720, 45, 735, 315));
        } else if (i == 10) {
            label->setGeometry(twipsRect(0, 3360, 975, 315));
            combo->setGeometry(twipsRect(960, 3360, 1215, 315));
        } else {
            const int top = 480 + (static_cast<int>(i) - 2) * 360;
            label->setGeometry(twipsRect(0, top, 975, 315));
            combo->setGeometry(twipsRect(960, top, 3495, 315));
        }
        if (i < 2) label->setPalette(red);
        // Typing is a change; a text set by the program is not, as the field
        // is then set along with it.
        connect(combo->lineEdit(), &QLineEdit::textEdited, this, [this, i] { setParam(i); });
        connect(combo, &QComboBox::activated, this, [this, i] {
            if (listOpen_[i])
                chooseEntry(i);
            else
                setParam(i);
            listOpen_[i] = false;
        });
        // The wheel chooses nothing: a box is changed by typing or by its list.
        combo->setFocusPolicy(Qt::StrongFocus);
        combo->installEventFilter(this);
        combo->view()->window()->installEventFilter(this);
        labels_.box(i) = label;
        boxes_.box(i) = combo;
    }
    rule(this, "stipulationSeparatorLine", 405, Qt::white);
    rule(this, "buttonSeparatorLine", 3720, palette().color(QPalette::WindowText));

    clockLabel_ = new QLabel(this);
    clockLabel_->setObjectName(QStringLiteral("clockLabel"));
    clockLabel_->setGeometry(twipsRect(2280, 3480, 1215, 255));
    clockLabel_->setAlignment(Qt::AlignCenter);
    QFont bold = clockLabel_->font();
    bold.setBold(true);
    clockLabel_->setFont(bold);
    clockLabel_->setToolTip(
        QStringLiteral("Time left of the limit that Popeye is given: 60 seconds, or what "
                       "\"MaxTime\" in Options says (MaxTime 600 for ten minutes)."));
    // The countdown names the limit: the label grows to the left for it.
    const int clockWidth = clockLabel_->fontMetrics().horizontalAdvance(countdownText(0, 0)) + 6;
    if (clockWidth > clockLabel_->width())
        clockLabel_->setGeometry(clockLabel_->geometry().adjusted(
            std::max(clockLabel_->width() - clockWidth, -twipsToWholePixels(2280 - 2175)), 0, 0,
            0));

    solveButton_ = namedButton(this, "solveButton", "&Solution", twipsRect(3600, 3360, 855, 315));
    solveButton_->setFont(bold);
    clearAllButton_ =
        namedButton(this, "clearAllButton", "Cl&ear All", twipsRect(0, 3840, 855, 315));
    copySolutionButton_ =
        namedButton(this, "copySolutionButton", "&Copy Sol", twipsRect(1320, 3840, 855, 315));
    printSolutionButton_ =
        namedButton(this, "printSolutionButton", "&Print Sol", twipsRect(2280, 3840, 855, 315));
    closeButton_ = namedButton(this, "closeButton", "Cl&ose", twipsRect(3600, 3840, 855, 315));
    connect(clearAllButton_, &QPushButton::clicked, this, &PopeyeWindow::clearAll);
    connect(solveButton_, &QPushButton::clicked, this, &PopeyeWindow::solve);
    connect(closeButton_, &QPushButton::clicked, this, &QWidget::hide);
    connect(copySolutionButton_, &QPushButton::clicked, this, &EngineWindow::copySolution);
    connect(printSolutionButton_, &QPushButton::clicked, this, &EngineWindow::printSolution);

    makeSolutionList(twipsRect(4560, 45, 3975, 3960))->setFocusPolicy(Qt::NoFocus);

    // The boxes top to bottom, then the buttons.
    QList<QWidget*> tabs;
    for (size_t i = 0; i < PopeyeFields::kCount; ++i)
        tabs << boxes_.box(i);
    chainTabs(tabs << solveButton_ << clearAllButton_ << copySolutionButton_ << printSolutionButton_
                   << closeButton_);

    fitCaptions();
    widenToCaptions();
    watchFocus();
}

void PopeyeWindow::fitCaptions() {
    // The labels take their longest caption in the font of this desktop; all
    // that stands right of them moves over, and the list is wide enough for
    // the solver's rows of 50 characters.
    int widest = 0;
    for (size_t i = 0; i < PopeyeFields::kCount; ++i) {
        const QLabel* label = labels_.box(i);
        widest = std::max(widest, label->fontMetrics().horizontalAdvance(label->text()) + 6);
    }
    const int labelColumn = twipsToWholePixels(975);
    extraWidth_ = std::max(0, widest - labelColumn);
    for (QWidget* child : findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (qobject_cast<QLabel*>(child) && child != clockLabel_ && child->x() < labelColumn)
            child->resize(child->width() + extraWidth_, child->height());
        else if (child->x() >= twipsToWholePixels(960))
            child->move(child->x() + extraWidth_, child->y());
        else if (child->width() >= twipsToWholePixels(4440))
            child->resize(child->width() + extraWidth_, child->height()); // the rules
    }
    const int rowWidth = solutionList_->fontMetrics().horizontalAdvance(QString(52, u'0')) +
                         solutionList_->verticalScrollBar()->sizeHint().width() + 4;
    const int wider = std::max(0, rowWidth - solutionList_->width());
    solutionList_->resize(solutionList_->width() + wider, solutionList_->height());
    resize(width() + extraWidth_ + wider, height());
}

void PopeyeWindow::setPieceLists(const PieceLists& lists) {
    PopeyeFields& fields = state_.popeyeFields;
    const auto show = [](QString& field, QComboBox* box, const QString& text) {
        box->setEditText(cutTrailingBlanks(QLatin1Char(' ') + text));
        field = text;
    };
    show(fields.whitePieces, boxes_.whitePieces, lists.white);
    show(fields.blackPieces, boxes_.blackPieces, lists.black);
    show(fields.neutralPieces, boxes_.neutralPieces, lists.neutral);
}

void PopeyeWindow::takeGameHeaders(const QStringList& headers) {
    const std::optional<QString> stipulation = stipulationTag(headers);
    if (!stipulation) return;
    const StipulationFields split = splitStipulation(*stipulation, QString());
    PopeyeFields& fields = state_.popeyeFields;
    showParam(fields.stipulation, boxes_.stipulation, split.stipulation);
    if (!split.moves.isEmpty()) showParam(fields.moves, boxes_.moves, split.moves);
}

void PopeyeWindow::setParam(size_t box) {
    state_.popeyeFields.box(box) = trimSpaces(boxes_.box(box)->currentText());
}

void PopeyeWindow::chooseEntry(size_t box) {
    QComboBox* combo = boxes_.box(box);
    QString& field = state_.popeyeFields.box(box);
    const EntryChoice choice = entryChoice(combo->itemText(combo->currentIndex()), field);
    field = choice.param;
    if (choice.none) {
        combo->setEditText(QString());
        return;
    }
    // The next tick shows the assembled field in the box.
    pendingBox_ = static_cast<int16_t>(box);
    wake();
}

void PopeyeWindow::clearAll() {
    solutionList_->clear();
    for (size_t i = 0; i < PopeyeFields::kCount; ++i) {
        state_.popeyeFields.box(i).clear();
        boxes_.box(i)->setEditText(QString());
    }
}

void PopeyeWindow::solve() {
    solutionList_->clear();
    PopeyeFields& fields = state_.popeyeFields;
    const StipulationFields split = splitStipulation(fields.stipulation, fields.moves);
    if (!split.warning.isEmpty()) {
        warn(split.warning);
        return;
    }
    if (split.stipulation != fields.stipulation)
        showParam(fields.stipulation, boxes_.stipulation, split.stipulation);
    if (split.moves != fields.moves) showParam(fields.moves, boxes_.moves, split.moves);
    const QString refusal = runWarning(fields);
    if (!refusal.isEmpty()) {
        warn(refusal);
        return;
    }
    const QString problem = problemPath(state_.programFolder, state_.tempSeed);
    const QString protocol = protocolPath(state_.programFolder, state_.tempSeed);
    // The solver appends to a protocol file that is there already.
    QFile::remove(protocol);
    if (!writeNewFile(problem, problemFileText(fields, protocol))) return;
    solutionList_->addItem(QStringLiteral("Calculating..."));
    const double maxTime = makeOptionText(fields.options).maxTime;

    if (!engine_.start(state_.popeyeProgram, popeyeArguments(fields, problem),
                       state_.programFolder))
        return;

    running_ = 1;
    rowsShown_.invalidate();
    protocolShown_ = false;
    cutNoteShown_ = false;
    beginRun(solveButton_);
    closeButton_->setText(QStringLiteral("&Hide"));
    run_.begin(protocol, maxTime);
    wake();
}

void PopeyeWindow::wake() {
    if (!pollTimer_->isActive()) pollTimer_->start();
}

void PopeyeWindow::tick() {
    if (pendingBox_ >= 0) {
        const auto at = static_cast<size_t>(pendingBox_);
        QComboBox* combo = boxes_.box(at);
        combo->setEditText(QLatin1Char(' ') + state_.popeyeFields.box(at));
        combo->lineEdit()->end(false);
        pendingBox_ = -1;
    }
    if (running_ == 0) {
        pollTimer_->stop();
        return;
    }
    showClock(run_.clock(clock_.elapsed() / 1000.0));
    switch (run_.advance(engine_.running())) {
    case PopeyeRun::Step::Rows:
        // A solver that writes without pause would keep the list busy: the
        // rows join it a few times a second, and the last ones when it ends.
        if (!rowsShown_.isValid() || rowsShown_.elapsed() >= kRowsShownMs) showProtocolRows();
        break;
    case PopeyeRun::Step::Finished:
        running_ = 0;
        showProtocolRows();
        removeWorkFiles();
        if (!isVisible()) show(); // the answer brings the window back
        endRun(solveButton_, closeButton_);
        break;
    case PopeyeRun::Step::Ended:
        running_ = 0;
        removeWorkFiles();
        showEnded(QStringLiteral("Popeye"), solveButton_, closeButton_);
        break;
    case PopeyeRun::Step::Waiting:
        break;
    }
}

bool PopeyeWindow::eventFilter(QObject* watched, QEvent* event) {
    for (size_t i = 0; i < PopeyeFields::kCount; ++i) {
        QComboBox* combo = boxes_.box(i);
        if (watched == combo && event->type() == QEvent::Wheel) return true;
        if (watched != combo->view()->window()) continue;
        if (event->type() == QEvent::Show) {
            listOpen_[i] = true;
        } else if (event->type() == QEvent::Hide) {
            // A choice is told right after the list closes; later, it is over.
            QTimer::singleShot(0, this, [this, i] { listOpen_[i] = false; });
        }
    }
    return EngineWindow::eventFilter(watched, event);
}

void PopeyeWindow::showProtocolRows() {
    if (!protocolShown_) {
        solutionList_->clear();
        protocolShown_ = true;
    }
    QScrollBar* scroll = solutionList_->verticalScrollBar();
    const bool following = scroll->value() == scroll->maximum();
    const int note = cutNoteShown_ ? 1 : 0;
    const ProtocolTail::Change change = run_.take(solutionList_->count() - note);
    if (change.cut && !cutNoteShown_) {
        solutionList_->insertItem(
            0, QStringLiteral("Only the last %1 rows are shown.").arg(kMaxShownRows));
        cutNoteShown_ = true;
    }
    if (change.dropped > 0)
        solutionList_->model()->removeRows(cutNoteShown_ ? 1 : 0, static_cast<int>(change.dropped));
    solutionList_->addItems(change.added);
    // The newest rows stay in sight unless the user scrolled up to read.
    if (following) solutionList_->scrollToBottom();
    rowsShown_.start();
}

void PopeyeWindow::removeWorkFiles() {
    QFile::remove(problemPath(state_.programFolder, state_.tempSeed));
    QFile::remove(protocolPath(state_.programFolder, state_.tempSeed));
}

void PopeyeWindow::stopRun() {
    if (running_ == 0) return;
    engine_.stop();
    // What the solver wrote until now stays in the list.
    if (run_.advance(false) == PopeyeRun::Step::Rows) showProtocolRows();
    run_.cancel();
    running_ = 0;
    removeWorkFiles();
    if (!protocolShown_) solutionList_->clear();
    solutionList_->addItem(QStringLiteral("The run was stopped."));
    endRun(solveButton_, closeButton_);
}

void PopeyeWindow::focusChanged() {
    for (size_t i = 0; i < PopeyeFields::kCount; ++i) {
        const bool focused = boxes_.box(i)->hasFocus() || boxes_.box(i)->lineEdit()->hasFocus();
        setFocusBorder(labels_.box(i), focused);
    }
}

void PopeyeWindow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    stretchSolutionList(4690 + extraWidth_ * kTwipsPerPixel, 465);
}

void PopeyeWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // Leaving the window empties the clock; a run writes it again next second.
    if (event->type() == QEvent::ActivationChange && !isActiveWindow()) clockLabel_->clear();
}

} // namespace marlith
