#include "gui/style_window.h"

#include "core/app_state.h"
#include "core/settings.h"
#include "core/style_import.h"
#include "drawing/diagram.h"
#include "drawing/font_pieces.h"
#include "drawing/piece_sheet.h"
#include "gui/pick_color.h"
#include "gui/tool_button.h"
#include "gui/tool_faces.h"
#include "gui/widget_geometry.h"
#include "styles/style_block.h"
#include "styles/style_form.h"

#include <QAbstractItemView>
#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QScrollBar>
#include <QShowEvent>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace marlith {

namespace {

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);

QLineEdit* numberEdit(QWidget* parent, const char* name, int digits) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    edit->setMaxLength(digits);
    edit->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("\\d*")), edit));
    // Wide enough for its digits and no wider.
    edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QLatin1Char('0')) * (digits + 2) +
                          12);
    return edit;
}

QLineEdit* textEdit(QWidget* parent, const char* name) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    return edit;
}

QLabel* label(QWidget* parent, const char* name, const char* caption) {
    auto* l = new QLabel(QString::fromUtf8(caption), parent);
    l->setObjectName(QLatin1String(name));
    return l;
}

QComboBox* editableBox(QWidget* parent, const char* name) {
    auto* box = new QComboBox(parent);
    box->setObjectName(QLatin1String(name));
    box->setEditable(true);
    box->setInsertPolicy(QComboBox::NoInsert);
    box->setCompleter(nullptr);
    return box;
}

QPushButton* swatch(QWidget* parent, const char* name) {
    auto* button = new QPushButton(parent);
    button->setObjectName(QLatin1String(name));
    button->setAutoDefault(false);
    button->setFixedSize(twipsToWholePixels(735), twipsToWholePixels(285));
    return button;
}

// A pair of boxes for the two directions, "X" between them.
QHBoxLayout* pair(QWidget* parent, QWidget* first, const char* timesName, QWidget* second) {
    auto* row = new QHBoxLayout;
    row->addWidget(first);
    row->addWidget(label(parent, timesName, "X"));
    row->addWidget(second);
    row->addStretch();
    return row;
}

// The column heads "Vert" and "Horiz" over such a pair.
QHBoxLayout* heads(QWidget* parent, const char* vertical, const char* horizontal, int width) {
    auto* row = new QHBoxLayout;
    auto* v = label(parent, vertical, "Vert");
    auto* h = label(parent, horizontal, "Horiz");
    v->setFixedWidth(width);
    row->addWidget(v);
    row->addSpacing(parent->fontMetrics().horizontalAdvance(QStringLiteral("X")) + 12);
    row->addWidget(h);
    row->addStretch();
    return row;
}

} // namespace

StyleWindow::StyleWindow(AppState& state, const Diagram& diagram, QWidget* parent)
    : QDialog(parent), state_(state), diagram_(diagram) {
    setObjectName(QStringLiteral("styleWindow"));
    setWindowTitle(QStringLiteral("Style"));
    setModal(true);
    padlockFaces_ = padlockFaces();
    createControls();
    createMenu();
    piecesPicture_ = builtInSheet();
    pickColor = [this](int32_t color, QWidget* focusAfter) {
        return marlith::pickColor(state_, color, this, focusAfter);
    };
    ask = [this](const QString& text, QMessageBox::StandardButtons buttons) {
        QMessageBox box(QMessageBox::Warning, QStringLiteral("Warning"), text, buttons, this);
        return static_cast<QMessageBox::StandardButton>(box.exec());
    };
    gridOffsetTimer_ = new QTimer(this);
    gridOffsetTimer_->setObjectName(QStringLiteral("gridOffsetTimer"));
    gridOffsetTimer_->setSingleShot(true);
    gridOffsetTimer_->setInterval(1);
    connect(gridOffsetTimer_, &QTimer::timeout, this, &StyleWindow::updateFarEdgeEntries);
}

void StyleWindow::createMenu() {
    auto* bar = new QMenuBar(this);
    QMenu* file = bar->addMenu(QStringLiteral("&File"));
    file->setObjectName(QStringLiteral("fileMenu"));
    const auto add = [&](const char* name, const char* caption, Qt::Key key,
                         void (StyleWindow::*slot)()) {
        QAction* action = file->addAction(QString::fromUtf8(caption));
        action->setObjectName(QLatin1String(name));
        action->setShortcut(QKeySequence(Qt::CTRL | key));
        connect(action, &QAction::triggered, this, slot);
    };
    add("saveStyleAction", "&Save style", Qt::Key_S, &StyleWindow::saveStyle);
    add("deleteStyleAction", "&Delete style", Qt::Key_D, &StyleWindow::deleteStyle);
    add("importStylesAction", "&Import styles", Qt::Key_I, &StyleWindow::chooseStyleFile);
    file->addSeparator()->setObjectName(QStringLiteral("fileSeparator1"));
    add("restoreDefaultsAction", "&Restore defaults", Qt::Key_R, &StyleWindow::restoreDefaults);
    file->addSeparator()->setObjectName(QStringLiteral("fileSeparator2"));
    // Ctrl+W closes a window on Linux; Ctrl+X cuts in its text boxes.
    add("exitAction", "E&xit", Qt::Key_W, &StyleWindow::reject);
    layout()->setMenuBar(bar);
}

void StyleWindow::createControls() {
    auto* left = new QVBoxLayout;
    left->addLayout(createNameRow());
    left->addWidget(createPiecesGroup());
    left->addLayout(createButtonRow());
    left->addStretch();

    // Right: board, frame, picture and grid.
    auto* border = new QGroupBox(QStringLiteral("2. Border/Frames/Grid"), this);
    border->setObjectName(QStringLiteral("borderGroup"));
    auto* grid = new QGridLayout(border);
    int row = 0;
    addBoardRows(grid, row);
    grid->addLayout(createColourBox(border), row++, 0, 1, 4);
    addPictureRow(grid, row);
    addGridRows(grid, row);
    grid->addLayout(createFontStyles(border), row++, 0, 1, 4);
    grid->addLayout(createAlignGroups(border), row++, 0, 1, 4);

    statusLabel_ = new QLabel(this);
    statusLabel_->setObjectName(QStringLiteral("statusLabel"));
    QPalette red = statusLabel_->palette();
    red.setColor(QPalette::WindowText, kRed);
    statusLabel_->setPalette(red);

    auto* right = new QVBoxLayout;
    right->addWidget(border);
    right->addWidget(statusLabel_);
    right->addStretch();
    auto* columns = new QHBoxLayout(this);
    columns->addLayout(left, 1);
    columns->addLayout(right);
}

void StyleWindow::watchFocus(QWidget* control, QLabel* shownBy) {
    control->installEventFilter(this);
    control->setProperty("focusLabel", QVariant::fromValue(static_cast<QObject*>(shownBy)));
}

void StyleWindow::previewOnEnter(QLineEdit* edit, bool sizesPicture) {
    connect(edit, &QLineEdit::returnPressed, this, &StyleWindow::preview);
    // A change of a length lets an open padlock size the picture anew.
    if (sizesPicture) connect(edit, &QLineEdit::textEdited, this, &StyleWindow::autoSizePicture);
}

void StyleWindow::addPairRow(QGridLayout* grid, int& row, QLabel* caption, QWidget* first,
                             const char* timesName, QWidget* second) {
    grid->addWidget(caption, row, 0);
    grid->addLayout(pair(grid->parentWidget(), first, timesName, second), row++, 1, 1,
                    grid->columnCount() - 1);
    watchFocus(first, caption);
    watchFocus(second, caption);
}

QHBoxLayout* StyleWindow::createNameRow() {
    auto* styleNameLabel = label(this, "styleNameLabel", "Style: ");
    styleNameBox_ = editableBox(this, "styleNameBox");
    watchFocus(styleNameBox_, styleNameLabel);
    watchStyleList();
    connect(styleNameBox_, &QComboBox::activated, this, &StyleWindow::chooseStyle);
    auto* nameRow = new QHBoxLayout;
    nameRow->addWidget(styleNameLabel);
    nameRow->addWidget(styleNameBox_, 1);
    return nameRow;
}

QGroupBox* StyleWindow::createPiecesGroup() {
    auto* pieces = new QGroupBox(this);
    pieces->setObjectName(QStringLiteral("piecesGroup"));
    auto* grid = new QGridLayout(pieces);
    int row = 0;
    // A caption and its text box; a browse button beside the box when named.
    const auto line = [&](const char* labelName, const char* caption, const char* editName,
                          const char* browseName = nullptr) {
        QLabel* l = label(pieces, labelName, caption);
        QLineEdit* edit = textEdit(pieces, editName);
        grid->addWidget(l, row, 0);
        grid->addWidget(edit, row, 1, 1, browseName ? 1 : 2);
        watchFocus(edit, l);
        if (browseName) {
            const auto faces = browseFaces();
            auto* browse = new ToolButton(faces[0], faces[1], pieces);
            browse->setObjectName(QLatin1String(browseName));
            grid->addWidget(browse, row, 2);
            connect(browse, &ToolButton::clicked, this, [this, edit] { browseFile(edit); });
        }
        ++row;
        return edit;
    };
    piecesFileEdit_ =
        line("piecesFileLabel", "Pieces file: ", "piecesFileEdit", "browsePiecesButton");
    addFontRows(pieces, grid, row);
    borderFileEdit_ =
        line("borderFileLabel", "Border File: ", "borderFileEdit", "browseBorderButton");
    piecesListEdit_ = line("piecesListLabel", "Pieces list: ", "piecesListEdit");
    startPositionEdit_ = line("startPositionLabel", "Start position: ", "startPositionEdit");
    englishNotationEdit_ =
        line("englishNotationLabel", "English notation: ", "englishNotationEdit");
    popeyeDictionaryEdit_ =
        line("popeyeDictionaryLabel", "Popeye Dictionary:", "popeyeDictionaryEdit");
    connect(piecesFileEdit_, &QLineEdit::returnPressed, this, &StyleWindow::loadPiecesFile);
    connect(borderFileEdit_, &QLineEdit::returnPressed, this, &StyleWindow::loadBorderFile);
    connect(piecesListEdit_, &QLineEdit::textEdited, this, &StyleWindow::autoSizePicture);

    auto* overlapLabel = label(pieces, "cellOverlapLabel", "SqrBorder width: ");
    cellOverlapVerticalEdit_ = numberEdit(pieces, "cellOverlapVerticalEdit", 4);
    cellOverlapHorizontalEdit_ = numberEdit(pieces, "cellOverlapHorizontalEdit", 4);
    auto* spaceLabel = label(pieces, "squareSpaceLabel", "Sqr. space: ");
    squareSpaceVerticalEdit_ = numberEdit(pieces, "squareSpaceVerticalEdit", 4);
    squareSpaceHorizontalEdit_ = numberEdit(pieces, "squareSpaceHorizontalEdit", 4);
    copyCounterCheck_ = new QCheckBox(QStringLiteral("Copy counter"), pieces);
    copyCounterCheck_->setObjectName(QStringLiteral("copyCounterCheck"));
    grid->addLayout(heads(pieces, "cellOverlapVerticalLabel", "cellOverlapHorizontalLabel",
                          cellOverlapVerticalEdit_->maximumWidth()),
                    row++, 1, 1, 2);
    addPairRow(grid, row, overlapLabel, cellOverlapVerticalEdit_, "cellOverlapTimesLabel",
               cellOverlapHorizontalEdit_);
    addPairRow(grid, row, spaceLabel, squareSpaceVerticalEdit_, "squareSpaceTimesLabel",
               squareSpaceHorizontalEdit_);
    grid->addWidget(copyCounterCheck_, row++, 0, 1, 3);
    for (QLineEdit* edit : {cellOverlapVerticalEdit_, cellOverlapHorizontalEdit_,
                            squareSpaceVerticalEdit_, squareSpaceHorizontalEdit_})
        previewOnEnter(edit, true);
    return pieces;
}

void StyleWindow::addFontRows(QWidget* pieces, QGridLayout* grid, int& row) {
    // A font in the box draws the pieces from its chess signs, on squares of
    // the size and colours beside it; an empty box uses the pieces file.
    auto* fontLabel = label(pieces, "piecesFontLabel", "Pieces font: ");
    piecesFontBox_ = editableBox(pieces, "piecesFontBox");
    piecesFontBox_->addItems({QString(), QString::fromLatin1(kPieceFontFamily)});
    auto* squaresLabel = label(pieces, "fontSquaresLabel", "Font squares: ");
    squareSizeEdit_ = numberEdit(pieces, "squareSizeEdit", 4);
    squareSizeEdit_->setToolTip(QStringLiteral("Square size in pixels"));
    lightColorSwatch_ = swatch(pieces, "lightColorSwatch");
    lightColorSwatch_->setToolTip(QStringLiteral("Light squares"));
    darkColorSwatch_ = swatch(pieces, "darkColorSwatch");
    darkColorSwatch_->setToolTip(QStringLiteral("Dark squares"));
    darkHatchCheck_ = new QCheckBox(QStringLiteral("Hatched"), pieces);
    darkHatchCheck_->setObjectName(QStringLiteral("darkHatchCheck"));
    auto* squares = new QHBoxLayout;
    for (QWidget* w : std::initializer_list<QWidget*>{squareSizeEdit_, lightColorSwatch_,
                                                      darkColorSwatch_, darkHatchCheck_})
        squares->addWidget(w);
    squares->addStretch();
    grid->addWidget(fontLabel, row, 0);
    grid->addWidget(piecesFontBox_, row++, 1, 1, 2);
    grid->addWidget(squaresLabel, row, 0);
    grid->addLayout(squares, row++, 1, 1, 2);
    watchFocus(piecesFontBox_, fontLabel);
    watchFocus(squareSizeEdit_, squaresLabel);
    connect(piecesFontBox_, &QComboBox::activated, this, &StyleWindow::autoSizeAndPreview);
    connect(piecesFontBox_->lineEdit(), &QLineEdit::returnPressed, this,
            &StyleWindow::autoSizeAndPreview);
    previewOnEnter(squareSizeEdit_, true);
    for (QPushButton* box : {lightColorSwatch_, darkColorSwatch_})
        connect(box, &QPushButton::clicked, this, [this, box] { pick(box); });
    connect(darkHatchCheck_, &QCheckBox::toggled, this, &StyleWindow::preview);
}

QHBoxLayout* StyleWindow::createButtonRow() {
    auto* buttons = new QHBoxLayout;
    const auto button = [&](const char* name, const char* caption, void (StyleWindow::*slot)()) {
        auto* b = new QPushButton(QString::fromUtf8(caption), this);
        b->setObjectName(QLatin1String(name));
        // Enter in a box previews; it must not also press a button.
        b->setAutoDefault(false);
        buttons->addWidget(b);
        connect(b, &QPushButton::clicked, this, slot);
    };
    button("okButton", "O&k", &StyleWindow::keepStyle);
    button("previewButton", "Pr&eView", &StyleWindow::preview);
    button("cancelButton", "&Cancel", &StyleWindow::reject);
    return buttons;
}

void StyleWindow::addBoardRows(QGridLayout* grid, int& row) {
    QWidget* border = grid->parentWidget();
    auto* boardLabel = label(border, "boardSizeLabel", "Board (squares): ");
    boardRowsEdit_ = numberEdit(border, "boardRowsEdit", 2);
    boardColumnsEdit_ = numberEdit(border, "boardColumnsEdit", 2);
    auto* offsetLabel = label(border, "boardOffsetLabel", "Board offset: ");
    boardOffsetYEdit_ = numberEdit(border, "boardOffsetYEdit", 4);
    boardOffsetXEdit_ = numberEdit(border, "boardOffsetXEdit", 4);
    auto* frameLabel = label(border, "frameWidthLabel", "Frame width: ");
    frameWidthEdit_ = numberEdit(border, "frameWidthEdit", 4);
    grid->addLayout(
        heads(border, "boardRowsLabel", "boardColumnsLabel", boardRowsEdit_->maximumWidth()), row++,
        1, 1, 3);
    addPairRow(grid, row, boardLabel, boardRowsEdit_, "boardSizeTimesLabel", boardColumnsEdit_);
    addPairRow(grid, row, offsetLabel, boardOffsetYEdit_, "boardOffsetTimesLabel",
               boardOffsetXEdit_);
    grid->addWidget(frameLabel, row, 0);
    grid->addWidget(frameWidthEdit_, row++, 1, 1, 3);
    watchFocus(frameWidthEdit_, frameLabel);
    for (QLineEdit* edit :
         {boardRowsEdit_, boardColumnsEdit_, boardOffsetYEdit_, boardOffsetXEdit_, frameWidthEdit_})
        previewOnEnter(edit, true);
}

QGridLayout* StyleWindow::createColourBox(QWidget* border) {
    auto* frameColorLabel = label(border, "frameColorLabel", "Frame color: ");
    frameColorSwatch_ = swatch(border, "frameColorSwatch");
    auto* backColorLabel = label(border, "backColorLabel", "Back color: ");
    backColorSwatch_ = swatch(border, "backColorSwatch");
    pictureHeightScrollBar_ = new QScrollBar(Qt::Vertical, border);
    pictureHeightScrollBar_->setObjectName(QStringLiteral("pictureHeightScrollBar"));
    pictureWidthScrollBar_ = new QScrollBar(Qt::Horizontal, border);
    pictureWidthScrollBar_->setObjectName(QStringLiteral("pictureWidthScrollBar"));
    for (QScrollBar* bar : {pictureHeightScrollBar_, pictureWidthScrollBar_}) {
        bar->setRange(1, kSizeBarMaximum);
        bar->setSingleStep(1);
        bar->setPageStep(10);
    }
    autoSizeButton_ = new QPushButton(QStringLiteral("+"), border);
    autoSizeButton_->setObjectName(QStringLiteral("autoSizeButton"));
    autoSizeButton_->setAutoDefault(false);
    autoSizeButton_->setFixedWidth(pictureHeightScrollBar_->sizeHint().width() + 4);
    watchFocus(frameColorSwatch_, frameColorLabel);
    watchFocus(backColorSwatch_, backColorLabel);
    connect(frameColorSwatch_, &QPushButton::clicked, this, [this] { pick(frameColorSwatch_); });
    connect(backColorSwatch_, &QPushButton::clicked, this, [this] { pick(backColorSwatch_); });
    connect(pictureWidthScrollBar_, &QScrollBar::valueChanged, this,
            &StyleWindow::resizePictureWidth);
    connect(pictureHeightScrollBar_, &QScrollBar::valueChanged, this,
            &StyleWindow::resizePictureHeight);
    connect(autoSizeButton_, &QPushButton::clicked, this, &StyleWindow::autoSizeAndPreview);
    // The height bar on the left of the colours, the width bar under them,
    // "+" in the corner.
    auto* colours = new QGridLayout;
    colours->addWidget(pictureHeightScrollBar_, 0, 0, 2, 1);
    colours->addWidget(frameColorLabel, 0, 1);
    colours->addWidget(frameColorSwatch_, 0, 2);
    colours->addWidget(backColorLabel, 1, 1);
    colours->addWidget(backColorSwatch_, 1, 2);
    colours->addWidget(autoSizeButton_, 2, 0);
    colours->addWidget(pictureWidthScrollBar_, 2, 1, 1, 2);
    return colours;
}

void StyleWindow::addPictureRow(QGridLayout* grid, int& row) {
    QWidget* border = grid->parentWidget();
    padlockButton_ = new ToolButton(padlockFaces_[0], padlockFaces_[0], border);
    padlockButton_->setObjectName(QStringLiteral("padlockButton"));
    padlockButton_->setFixedSize(19, 19);
    pictureSizeLabel_ = label(border, "pictureSizeLabel", "Picture: ");
    pictureHeightEdit_ = numberEdit(border, "pictureHeightEdit", 5);
    pictureWidthEdit_ = numberEdit(border, "pictureWidthEdit", 5);
    connect(padlockButton_, &ToolButton::clicked, this, &StyleWindow::togglePadlock);
    for (QLineEdit* edit : {pictureHeightEdit_, pictureWidthEdit_})
        previewOnEnter(edit, false);
    auto* pictureRow = new QHBoxLayout;
    pictureRow->addWidget(padlockButton_);
    pictureRow->addWidget(pictureSizeLabel_);
    grid->addLayout(pictureRow, row, 0);
    grid->addLayout(pair(border, pictureHeightEdit_, "pictureSizeTimesLabel", pictureWidthEdit_),
                    row++, 1, 1, 3);
    watchFocus(pictureHeightEdit_, pictureSizeLabel_);
    watchFocus(pictureWidthEdit_, pictureSizeLabel_);
}

void StyleWindow::addGridRows(QGridLayout* grid, int& row) {
    QWidget* border = grid->parentWidget();
    auto* separator = new QFrame(border);
    separator->setObjectName(QStringLiteral("gridSeparatorLine"));
    separator->setFrameShape(QFrame::HLine);
    showGridCheck_ = new QCheckBox(QStringLiteral("Show grid"), border);
    showGridCheck_->setObjectName(QStringLiteral("showGridCheck"));
    connect(showGridCheck_, &QCheckBox::clicked, this, &StyleWindow::switchGrid);
    fontNameBox_ = editableBox(border, "fontNameBox");
    QStringList families = QFontDatabase::families();
    std::stable_sort(families.begin(), families.end(),
                     [](const QString& a, const QString& b) { return a.toUpper() < b.toUpper(); });
    fontNameBox_->addItems(families);
    connect(fontNameBox_, &QComboBox::activated, this, &StyleWindow::preview);
    auto* sizeLabel = label(border, "fontSizeLabel", "Size: ");
    fontSizeBox_ = editableBox(border, "fontSizeBox");
    for (int size = 6; size <= 24; size += 2)
        fontSizeBox_->addItem(u' ' + QString::number(size));
    auto* gridOffsetLabel = label(border, "gridOffsetLabel", "Grid offset: ");
    gridOffsetYBox_ = editableBox(border, "gridOffsetYBox");
    gridOffsetXBox_ = editableBox(border, "gridOffsetXBox");
    for (QComboBox* box : {gridOffsetYBox_, gridOffsetXBox_}) {
        box->addItems({QStringLiteral("4"), QStringLiteral("4")});
        box->setMaximumWidth(cellOverlapVerticalEdit_->maximumWidth() * 3 / 2);
    }
    for (QComboBox* box : {fontSizeBox_, gridOffsetYBox_, gridOffsetXBox_}) {
        connect(box->lineEdit(), &QLineEdit::returnPressed, this, &StyleWindow::preview);
        connect(box, &QComboBox::activated, this, &StyleWindow::preview);
    }
    grid->addWidget(separator, row++, 0, 1, 4);
    grid->addWidget(showGridCheck_, row++, 0, 1, 4);
    grid->addWidget(fontNameBox_, row++, 0, 1, 4);
    grid->addWidget(sizeLabel, row, 0);
    grid->addWidget(fontSizeBox_, row++, 1, 1, 3);
    watchFocus(fontSizeBox_, sizeLabel);
    addPairRow(grid, row, gridOffsetLabel, gridOffsetYBox_, "gridOffsetTimesLabel",
               gridOffsetXBox_);
}

QGridLayout* StyleWindow::createFontStyles(QWidget* border) {
    static const char* const names[] = {"boldCheck", "italicCheck", "underlineCheck",
                                        "strikeoutCheck", "capsCheck"};
    static const char* const captions[] = {"&Bold", "&Italic", "&Underline", "S&trikeout", "CA&PS"};
    auto* fontStyles = new QGridLayout;
    for (size_t i = 0; i < fontStyleChecks_.size(); ++i) {
        auto* check = new QCheckBox(QString::fromUtf8(captions[i]), border);
        check->setObjectName(QLatin1String(names[i]));
        // Each shown in the attribute it names.
        QFont font = check->font();
        font.setBold(i == 0);
        font.setItalic(i == 1);
        font.setUnderline(i == 2);
        font.setStrikeOut(i == 3);
        check->setFont(font);
        fontStyleChecks_[i] = check;
        fontStyles->addWidget(check, static_cast<int>(i % 3), static_cast<int>(i / 3));
        connect(check, &QCheckBox::clicked, this, &StyleWindow::preview);
    }
    auto* fontColorLabel = label(border, "fontColorLabel", "Co&lor");
    fontColorSwatch_ = swatch(border, "fontColorSwatch");
    fontColorLabel->setBuddy(fontColorSwatch_);
    fontStyles->addWidget(fontColorLabel, 0, 2);
    fontStyles->addWidget(fontColorSwatch_, 1, 2);
    watchFocus(fontColorSwatch_, fontColorLabel);
    connect(fontColorSwatch_, &QPushButton::clicked, this, [this] { pick(fontColorSwatch_); });
    return fontStyles;
}

QHBoxLayout* StyleWindow::createAlignGroups(QWidget* border) {
    const auto alignGroup =
        [&](const char* name, const char* caption, const std::array<const char*, 3>& names,
            const std::array<const char*, 3>& captions, std::array<QRadioButton*, 3>& options) {
            auto* group = new QGroupBox(QString::fromUtf8(caption), border);
            group->setObjectName(QLatin1String(name));
            auto* column = new QVBoxLayout(group);
            for (size_t i = 0; i < 3; ++i) {
                options[i] = new QRadioButton(QString::fromUtf8(captions[i]), group);
                options[i]->setObjectName(QLatin1String(names[i]));
                column->addWidget(options[i]);
                connect(options[i], &QRadioButton::clicked, this, &StyleWindow::preview);
            }
            return group;
        };
    auto* aligns = new QHBoxLayout;
    aligns->addWidget(alignGroup("verticalAlignGroup", "Vert. align",
                                 {"alignUpOption", "alignMiddleOption", "alignDownOption"},
                                 {"Up", "Middle", "Down"}, verticalAlignOptions_));
    aligns->addWidget(alignGroup("horizontalAlignGroup", "Horiz. align",
                                 {"alignLeftOption", "alignCenterOption", "alignRightOption"},
                                 {"Left", "Center", "Right"}, horizontalAlignOptions_));
    return aligns;
}

void StyleWindow::watchStyleList() {
    // The pop-up filters its own view's events and activates the entry from
    // there; these filters, installed after its own, see each event first.
    styleList_ = styleNameBox_->view();
    styleList_->installEventFilter(this);
    styleList_->viewport()->installEventFilter(this);
}

void StyleWindow::setStyleNames(const QStringList& names) {
    styleNameBox_->clear();
    styleNameBox_->addItems(names);
}

bool StyleWindow::eventFilter(QObject* watched, QEvent* event) {
    if (styleList_ && (watched == styleList_ || watched == styleList_->viewport())) {
        const bool released = event->type() == QEvent::MouseButtonRelease;
        // The pop-up takes Enter already as a shortcut, before the key press.
        const bool confirmed =
            (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) &&
            (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return ||
             static_cast<QKeyEvent*>(event)->key() == Qt::Key_Enter);
        if ((released || confirmed) && styleList_->isVisible() &&
            styleList_->currentIndex().isValid()) {
            listChoicePending_ = true;
            // A release or key that chose nothing must not leave the way open
            // for the next activation by typing.
            QTimer::singleShot(0, this, [this] { listChoicePending_ = false; });
        }
        return QDialog::eventFilter(watched, event);
    }
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        const bool in = event->type() == QEvent::FocusIn;
        if (auto* shownBy =
                qobject_cast<QLabel*>(watched->property("focusLabel").value<QObject*>()))
            setFocusBorder(shownBy, in);
        // A colour box loses its own frame while it has the focus.
        if (auto* box = qobject_cast<QPushButton*>(watched)) setSwatch(box, swatchColor(box));
    }
    return QDialog::eventFilter(watched, event);
}

void StyleWindow::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (event->spontaneous()) return;
    // Each opening starts from the style in force, with the size of the
    // picture kept as it stands.
    move(0, 0);
    autoSizeButton_->setEnabled(false);
    padlockButton_->setFaces(padlockFaces_[1], padlockFaces_[1]);
    setPictureSizeColor(kRed);
    styleToControls();
    setStatus(QStringLiteral("View mode..."));
}

void StyleWindow::setSwatch(QPushButton* box, int32_t color) {
    box->setProperty("styleColor", color);
    const QColor c(styleColor(color));
    box->setStyleSheet(QStringLiteral("QPushButton { background-color: %1; border: %2; }")
                           .arg(c.name(), box->hasFocus() ? QStringLiteral("2px dotted gray")
                                                          : QStringLiteral("1px solid black")));
}

int32_t StyleWindow::swatchColor(const QPushButton* box) const {
    return box->property("styleColor").toInt();
}

void StyleWindow::setPictureSizeColor(const QColor& color) {
    for (QWidget* w : std::initializer_list<QWidget*>{pictureSizeLabel_, pictureHeightEdit_,
                                                      pictureWidthEdit_}) {
        QPalette palette = w->palette();
        palette.setColor(QPalette::WindowText, color);
        palette.setColor(QPalette::Text, color);
        w->setPalette(palette);
    }
}

bool StyleWindow::loadPicture(const QString& file, QImage& picture) const {
    QImage loaded;
    if (!loaded.load(programPath(state_.programFolder, file)) || loaded.isNull()) return false;
    picture = loaded;
    return true;
}

void StyleWindow::setStatus(const QString& text) {
    statusLabel_->setText(text);
    statusLabel_->repaint();
}

QString StyleWindow::statusText() const {
    return statusLabel_->text();
}

void StyleWindow::styleToControls() {
    previewBlocked_ = true;
    const Style& style = state_.style;
    // A picture is read again only under a new name (Enter in its box reads
    // it anew); one that can't be read leaves the measure as it was.
    if (style.PiecesFile != piecesPictureFile_) {
        if (style.PiecesFile.isEmpty()) piecesPicture_ = builtInSheet();
        if (style.PiecesFile.isEmpty() || loadPicture(style.PiecesFile, piecesPicture_))
            piecesPictureFile_ = style.PiecesFile;
    }
    if (!style.BorderFile.isEmpty() && style.BorderFile != borderPictureFile_ &&
        loadPicture(style.BorderFile, borderPicture_))
        borderPictureFile_ = style.BorderFile;

    const StyleForm form = formFromStyle(style);
    for (const auto& [edit, field] : textBoxes())
        edit->setText(form.*field);
    styleNameBox_->setEditText(form.styleName);
    copyCounterCheck_->setChecked(form.copyCounter);
    showGridCheck_->setChecked(form.showGrid);
    setSwatch(backColorSwatch_, form.backColor);
    setSwatch(frameColorSwatch_, form.frameColor);
    setSwatch(lightColorSwatch_, form.lightColor);
    setSwatch(darkColorSwatch_, form.darkColor);
    darkHatchCheck_->setChecked(form.darkHatch);
    piecesFontBox_->setEditText(form.piecesFont);

    // The bars start from their middle, which stands for the picture as it is.
    const QSize picture = diagram_.image().size() * kTwipsPerPixel;
    baseWidth_ = 0;
    pictureWidthScrollBar_->setValue(kSizeBarMaximum / 2);
    baseWidth_ = picture.width();
    baseHeight_ = 0;
    pictureHeightScrollBar_->setValue(kSizeBarMaximum / 2);
    baseHeight_ = picture.height();

    const std::array<bool, 5> styles = {form.bold, form.italic, form.underline, form.strikeout,
                                        form.caps};
    for (size_t i = 0; i < styles.size(); ++i)
        fontStyleChecks_[i]->setChecked(styles[i]);
    verticalAlignOptions_[static_cast<size_t>(form.verticalAlign)]->setChecked(true);
    horizontalAlignOptions_[static_cast<size_t>(form.horizontalAlign)]->setChecked(true);
    fontSizeBox_->setEditText(form.fontSize);
    setSwatch(fontColorSwatch_, form.fontColor);
    fontNameBox_->setEditText(form.fontName);

    // The grid offset boxes offer the far edge of the picture, once the
    // controls are loaded.
    const QFontMetrics metrics(diagram_.font());
    pendingFarEdgeY_ = farEdgeOffset(picture.height(), metrics.height() * kTwipsPerPixel, 90);
    pendingFarEdgeX_ = farEdgeOffset(
        picture.width(), metrics.horizontalAdvance(QLatin1Char('2')) * kTwipsPerPixel, 105);
    gridOffsetYBox_->setEditText(form.gridOffsetY);
    gridOffsetXBox_->setEditText(form.gridOffsetX);
    gridOffsetTimer_->start();
    previewBlocked_ = false;
}

std::array<std::pair<QLineEdit*, QString StyleForm::*>, 18> StyleWindow::textBoxes() const {
    return {{{piecesFileEdit_, &StyleForm::piecesFile},
             {squareSizeEdit_, &StyleForm::squareSize},
             {borderFileEdit_, &StyleForm::borderFile},
             {piecesListEdit_, &StyleForm::piecesList},
             {startPositionEdit_, &StyleForm::startPosition},
             {englishNotationEdit_, &StyleForm::englishNotation},
             {popeyeDictionaryEdit_, &StyleForm::popeyeDictionary},
             {cellOverlapVerticalEdit_, &StyleForm::cellOverlapVertical},
             {cellOverlapHorizontalEdit_, &StyleForm::cellOverlapHorizontal},
             {squareSpaceVerticalEdit_, &StyleForm::squareSpaceVertical},
             {squareSpaceHorizontalEdit_, &StyleForm::squareSpaceHorizontal},
             {boardRowsEdit_, &StyleForm::boardRows},
             {boardColumnsEdit_, &StyleForm::boardColumns},
             {boardOffsetYEdit_, &StyleForm::boardOffsetY},
             {boardOffsetXEdit_, &StyleForm::boardOffsetX},
             {frameWidthEdit_, &StyleForm::frameWidth},
             {pictureHeightEdit_, &StyleForm::pictureHeight},
             {pictureWidthEdit_, &StyleForm::pictureWidth}}};
}

StyleForm StyleWindow::formFromControls() const {
    StyleForm form;
    form.styleName = styleNameBox_->currentText();
    for (const auto& [edit, field] : textBoxes())
        form.*field = edit->text();
    form.copyCounter = copyCounterCheck_->isChecked();
    form.frameColor = swatchColor(frameColorSwatch_);
    form.backColor = swatchColor(backColorSwatch_);
    form.piecesFont = piecesFontBox_->currentText();
    form.lightColor = swatchColor(lightColorSwatch_);
    form.darkColor = swatchColor(darkColorSwatch_);
    form.darkHatch = darkHatchCheck_->isChecked();
    form.showGrid = showGridCheck_->isChecked();
    form.fontName = fontNameBox_->currentText();
    form.fontSize = fontSizeBox_->currentText();
    form.gridOffsetY = gridOffsetYBox_->currentText();
    form.gridOffsetX = gridOffsetXBox_->currentText();
    form.bold = fontStyleChecks_[0]->isChecked();
    form.italic = fontStyleChecks_[1]->isChecked();
    form.underline = fontStyleChecks_[2]->isChecked();
    form.strikeout = fontStyleChecks_[3]->isChecked();
    form.caps = fontStyleChecks_[4]->isChecked();
    form.fontColor = swatchColor(fontColorSwatch_);
    for (int i = 0; i < 3; ++i) {
        if (verticalAlignOptions_[static_cast<size_t>(i)]->isChecked()) form.verticalAlign = i;
        if (horizontalAlignOptions_[static_cast<size_t>(i)]->isChecked()) form.horizontalAlign = i;
    }
    return form;
}

void StyleWindow::controlsToStyle() {
    storeForm(formFromControls(), piecesPicture_.size(), state_.style);
    state_.fullDictionary = state_.style.PyDictionary + state_.pyDatDictionary;
}

void StyleWindow::preview() {
    if (previewBlocked_) return;
    controlsToStyle();
    Q_EMIT redrawRequested();
    // The controls show what the draw made of the numbers.
    styleToControls();
    setStatus(QStringLiteral("View mode..."));
}

void StyleWindow::keepStyle() {
    controlsToStyle();
    state_.savedStyle = state_.style;
    accept();
}

void StyleWindow::chooseStyle(int index) {
    if (!listChoicePending_ || index < 0 || index >= styleNameBox_->count()) return;
    listChoicePending_ = false;
    Q_EMIT styleChosen(styleNameBox_->itemText(index));
    styleToControls();
    setStatus(QStringLiteral("View mode..."));
}

void StyleWindow::togglePadlock() {
    const bool wasAutomatic = autoSizeButton_->isEnabled();
    const QPixmap& face = padlockFaces_[wasAutomatic ? 1 : 0];
    padlockButton_->setFaces(face, face);
    setPictureSizeColor(wasAutomatic ? kRed : kBlue);
    autoSizeButton_->setEnabled(!wasAutomatic);
}

void StyleWindow::autoSizePicture() {
    if (!autoSizeButton_->isEnabled()) return;
    pictureHeightEdit_->setText(QStringLiteral("0"));
    pictureWidthEdit_->setText(QStringLiteral("0"));
}

void StyleWindow::autoSizeAndPreview() {
    autoSizePicture();
    preview();
}

void StyleWindow::switchGrid(bool on) {
    // With the grid off the board moves into the corner, and the offsets and
    // colours of the grid wait for it to come back.
    if (!on) {
        savedBoardOffsetY_ = boardOffsetYEdit_->text();
        savedBoardOffsetX_ = boardOffsetXEdit_->text();
        savedGridOffsetY_ = gridOffsetYBox_->currentText();
        savedGridOffsetX_ = gridOffsetXBox_->currentText();
        savedBackColor_ = swatchColor(backColorSwatch_);
        savedFontColor_ = swatchColor(fontColorSwatch_);
        boardOffsetYEdit_->setText(QStringLiteral("0"));
        boardOffsetXEdit_->setText(QStringLiteral("0"));
        autoSizePicture();
        if (!autoSizeButton_->isEnabled()) {
            togglePadlock();
            autoSizeAndPreview();
        }
    } else {
        boardOffsetYEdit_->setText(savedBoardOffsetY_);
        boardOffsetXEdit_->setText(savedBoardOffsetX_);
        autoSizePicture();
        if (!autoSizeButton_->isEnabled()) {
            togglePadlock();
            autoSizeAndPreview();
        }
        preview();
        setSwatch(backColorSwatch_, savedBackColor_);
        setSwatch(fontColorSwatch_, savedFontColor_);
        gridOffsetXBox_->setEditText(savedGridOffsetX_);
        gridOffsetYBox_->setEditText(savedGridOffsetY_);
    }
    preview();
}

void StyleWindow::warnAbout(const QString& text) {
    ask(text, QMessageBox::Ok);
}

void StyleWindow::loadPiecesFile() {
    state_.style.PiecesFile = piecesFileEdit_->text();
    piecesPictureFile_ = state_.style.PiecesFile;
    if (!loadPicture(state_.style.PiecesFile, piecesPicture_)) {
        warnAbout(QStringLiteral("File not found!"));
        return;
    }
    autoSizePicture();
    preview();
}

void StyleWindow::loadBorderFile() {
    Style& style = state_.style;
    style.BorderFile = borderFileEdit_->text();
    borderPictureFile_ = style.BorderFile;
    if (!loadPicture(style.BorderFile, borderPicture_)) {
        warnAbout(QStringLiteral("File not found!"));
        return;
    }
    // The board goes into the middle of its picture.
    const QPoint base = centredBoardBase(borderPicture_.size() * kTwipsPerPixel, style);
    style.XBase = static_cast<int16_t>(base.x());
    boardOffsetXEdit_->setText(QString::number(twipsToWholePixels(style.XBase)));
    style.YBase = static_cast<int16_t>(base.y());
    boardOffsetYEdit_->setText(QString::number(twipsToWholePixels(style.YBase)));
    autoSizePicture();
    preview();
}

void StyleWindow::browseFile(QLineEdit* edit) {
    const bool sheet = edit == piecesFileEdit_;
    const std::optional<QString> path =
        chooseFile ? chooseFile(sheet ? ChooserMode::PieceSheet : ChooserMode::BorderBitmap)
                   : std::nullopt;
    if (!path) return;
    edit->setText(*path);
    sheet ? loadPiecesFile() : loadBorderFile();
    edit->end(false);
}

void StyleWindow::pick(QPushButton* box) {
    const int32_t color = pickColor(swatchColor(box), box);
    if (color >= 0) setSwatch(box, color);
    preview();
}

void StyleWindow::resizePictureWidth(int value) {
    if (baseWidth_ == 0) return;
    const int width = std::max(scrolledLength(value, baseWidth_), kTwipsPerPixel);
    pictureWidthEdit_->setText(QString::number(twipsToWholePixels(width)));
    Q_EMIT pictureResized(width, diagram_.image().height() * kTwipsPerPixel);
}

void StyleWindow::resizePictureHeight(int value) {
    if (baseHeight_ == 0) return;
    const int height = std::max(scrolledLength(value, baseHeight_), kTwipsPerPixel);
    pictureHeightEdit_->setText(QString::number(twipsToWholePixels(height)));
    Q_EMIT pictureResized(diagram_.image().width() * kTwipsPerPixel, height);
}

void StyleWindow::updateFarEdgeEntries() {
    const auto offer = [](QComboBox* box, int& pending) {
        if (pending <= 0) return;
        const QString text = box->currentText();
        box->setItemText(1, QString::number(pending));
        pending = 0;
        box->setEditText(text);
    };
    offer(gridOffsetYBox_, pendingFarEdgeY_);
    offer(gridOffsetXBox_, pendingFarEdgeX_);
}

void StyleWindow::saveStyle() {
    controlsToStyle();
    Style& style = state_.style;
    if (style.PiecesFile.isEmpty() && style.PiecesFont.isEmpty()) {
        warnAbout(QStringLiteral("There's no valid pieces file!"));
        return;
    }
    const QString name = style.StyleName.toUpper();
    if (name.isEmpty() || name == u"CUSTOM") {
        warnAbout(QStringLiteral("There's no valid style name!"));
        return;
    }
    // A name that the settings file would give back changed would be saved
    // and then never found again.
    if (const QString refusal = styleRefusal(style); !refusal.isEmpty()) {
        warnAbout(refusal);
        return;
    }
    if (styleNameBox_->findText(style.StyleName, Qt::MatchFixedString) >= 0) {
        if (ask(replaceStyleQuestion(style.StyleName), QMessageBox::Yes | QMessageBox::No) !=
            QMessageBox::Yes)
            return;
    } else {
        styleNameBox_->addItem(style.StyleName);
        Q_EMIT styleAdded(style.StyleName);
    }
    if (!writeStyles(state_.programFolder, style, true)) {
        setStatus(QStringLiteral("Marlith.ini can't be written!"));
        return;
    }
    setStatus(style.StyleName + QStringLiteral(" saved!"));
}

void StyleWindow::deleteStyle() {
    // The name in the box is the one asked about and the one deleted.
    controlsToStyle();
    const QString name = state_.style.StyleName;
    if (ask(QStringLiteral("Are you sure you want to delete ") + name + u'?',
            QMessageBox::Yes | QMessageBox::No) != QMessageBox::Yes)
        return;
    writeStyles(state_.programFolder, state_.style, false);
    const int index = styleNameBox_->findText(name, Qt::MatchFixedString);
    if (index < 0) return;
    styleNameBox_->removeItem(index);
    styleNameBox_->setEditText(name);
    Q_EMIT styleRemoved(name);
}

void StyleWindow::chooseStyleFile() {
    const std::optional<QString> path =
        chooseFile ? chooseFile(ChooserMode::StyleFile) : std::nullopt;
    if (!path) return;
    styleFilePath_ = *path;
    if (styleFilePath_.isEmpty()) return;
    QStringList known;
    for (int i = 0; i < styleNameBox_->count(); ++i)
        known.append(styleNameBox_->itemText(i));
    ImportHooks hooks;
    hooks.blockStarted = [this](const QString& name) {
        setStatus(QStringLiteral("Style ") + name);
    };
    hooks.ask = [this](const QString& text, ImportButtons buttons) {
        const QMessageBox::StandardButtons shown =
            buttons == ImportButtons::Ok ? QMessageBox::Ok
            : buttons == ImportButtons::OkCancel
                ? QMessageBox::Ok | QMessageBox::Cancel
                : QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
        switch (ask(text, shown)) {
        case QMessageBox::Yes:
            return ImportAnswer::Yes;
        case QMessageBox::No:
            return ImportAnswer::No;
        case QMessageBox::Ok:
            return ImportAnswer::Ok;
        default:
            return ImportAnswer::Cancel;
        }
    };
    const QString edited = styleNameBox_->currentText();
    bool complete = false;
    for (const QString& name :
         importStyles(styleFilePath_, state_.programFolder, known, hooks, &complete)) {
        styleNameBox_->addItem(name);
        Q_EMIT styleAdded(name);
    }
    styleNameBox_->setEditText(edited);
    setStatus(complete ? QStringLiteral("Import OK!") : QStringLiteral("Import incomplete!"));
}

void StyleWindow::restoreDefaults() {
    Style& style = state_.style;
    resetStyle(style);
    state_.fullDictionary.clear();
    style.SqrVTab = style.SqrHeight;
    style.SqrHTab = style.SqrWidth;
    styleToControls();
    autoSizeButton_->setEnabled(false);
    togglePadlock();
    // The default style draws from the built-in sheet again.
    Q_EMIT sheetReset();
    piecesPicture_ = builtInSheet();
    piecesPictureFile_.clear();
    preview();
}

} // namespace marlith
