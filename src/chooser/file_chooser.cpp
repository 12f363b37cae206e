#include "chooser/file_chooser.h"

#include "chooser/seek_rules.h"
#include "core/app_state.h"
#include "core/widget_geometry.h"
#include "styles/style.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStorageInfo>
#include <QStyle>

namespace marlith {

namespace {

constexpr int kClientWidth = 5415;
constexpr int kClientHeight = 3405;

} // namespace

WinSeek::WinSeek(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("WinSeek"));
    setFixedSize(kClientWidth / kTwipsPerPixel, kClientHeight / kTwipsPerPixel);

    picture1_ = new QWidget(this);
    picture1_->setObjectName(QStringLiteral("Picture1"));
    lblCriteria_ = new QLabel(QStringLiteral("Search &Criteria:"), picture1_);
    lblCriteria_->setObjectName(QStringLiteral("lblCriteria"));
    txtSearchSpec_ = new QComboBox(picture1_);
    txtSearchSpec_->setObjectName(QStringLiteral("txtSearchSpec"));
    txtSearchSpec_->setEditable(true);
    // A pattern is typed as it stands: no completion, no growing list.
    txtSearchSpec_->setCompleter(nullptr);
    txtSearchSpec_->setInsertPolicy(QComboBox::NoInsert);
    txtSearchSpec_->setEditText(QStringLiteral("*.bmp"));
    lblCriteria_->setBuddy(txtSearchSpec_);
    drvList_ = new QComboBox(picture1_);
    drvList_->setObjectName(QStringLiteral("drvList"));
    dirList_ = new QListWidget(picture1_);
    dirList_->setObjectName(QStringLiteral("dirList"));
    filList_ = new QListWidget(picture1_);
    filList_->setObjectName(QStringLiteral("filList"));
    label1_ = new QLabel(QStringLiteral("File:"), picture1_);
    label1_->setObjectName(QStringLiteral("Label1"));
    text2_ = new QLineEdit(picture1_);
    text2_->setObjectName(QStringLiteral("Text2"));
    label1_->setBuddy(text2_);
    okCmd_ = new QPushButton(QStringLiteral("O&k"), picture1_);
    okCmd_->setObjectName(QStringLiteral("OkCmd"));
    cancelCmd_ = new QPushButton(QStringLiteral("Cl&ose"), picture1_);
    cancelCmd_->setObjectName(QStringLiteral("CancelCmd"));
    // Enter means Ok in the name box only, not wherever the focus is.
    okCmd_->setAutoDefault(false);
    cancelCmd_->setAutoDefault(false);

    lblCriteria_->setGeometry(TwipRect(120, 60, 2535, 240));
    txtSearchSpec_->setGeometry(TwipRect(120, 315, 2535, 330));
    filList_->setGeometry(TwipRect(120, 735, 2535, 1890));
    drvList_->setGeometry(TwipRect(2760, 315, 2535, 330));
    dirList_->setGeometry(TwipRect(2760, 735, 2535, 1890));
    label1_->setGeometry(TwipRect(120, 2775, 480, 300));
    text2_->setGeometry(TwipRect(615, 2760, 2040, 330));
    okCmd_->setGeometry(TwipRect(2760, 2745, 1215, 360));
    cancelCmd_->setGeometry(TwipRect(4080, 2745, 1215, 360));

    connect(txtSearchSpec_, &QComboBox::editTextChanged, this, &WinSeek::txtSearchSpec_Change);
    connect(drvList_, &QComboBox::currentIndexChanged, this, &WinSeek::drvList_Change);
    connect(dirList_, &QListWidget::itemActivated, this, &WinSeek::dirList_Open);
    connect(filList_, &QListWidget::itemClicked, this, &WinSeek::filList_Click);
    connect(filList_, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem*> chosen = filList_->selectedItems();
        if (!chosen.isEmpty()) filList_Click(chosen.front());
    });
    connect(filList_, &QListWidget::itemDoubleClicked, this, &WinSeek::filList_DblClick);
    connect(okCmd_, &QPushButton::clicked, this, &WinSeek::OkCmd_Click);
    connect(cancelCmd_, &QPushButton::clicked, this, &WinSeek::CancelCmd_Click);
    for (QObject* watched : {static_cast<QObject*>(text2_), static_cast<QObject*>(txtSearchSpec_),
                             static_cast<QObject*>(dirList_)})
        watched->installEventFilter(this);

    Form_Load();
    // The lists start in the working directory, the program's folder.
    if (!SetDirPath(QDir::currentPath())) SetDirPath(QStringLiteral("/"));
    FillDrives();
}

void WinSeek::Form_Load() {
    picture1_->setGeometry(0, 0, width(), kClientHeight / kTwipsPerPixel);
    const QColor back = palette().color(QPalette::Window);
    for (QWidget* widget : {picture1_, static_cast<QWidget*>(lblCriteria_)}) {
        QPalette colours = widget->palette();
        colours.setColor(QPalette::Window, back);
        widget->setPalette(colours);
        widget->setAutoFillBackground(true);
    }
}

void WinSeek::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Restoring a minimised window is no new use.
    if (!event->spontaneous()) Form_Activate();
}

void WinSeek::Form_Activate() {
    const QString lastFilter = txtSearchSpec_->currentText();
    const int mode = state_.seekMode;
    // Only 1 counts as a choice on return, and 1 is also a purpose.
    if (mode == 1) state_.seekMode = 0;
    txtSearchSpec_->clear();

    const std::optional<SeekEntry> entry = SeekEntryFor(mode, lastFilter);
    if (entry) {
        txtSearchSpec_->addItems(entry->filters);
        txtSearchSpec_->setEditText(entry->filter);
        text2_->setText(entry->name);
        setWindowTitle(entry->caption);
    } else {
        txtSearchSpec_->setEditText(lastFilter);
    }

    // Drives, folders and files may have come and gone since the last use.
    FillDrives();
    RefreshDirList();
    text2_->setFocus();
}

void WinSeek::OkCmd_Click() {
    const std::optional<QString> path =
        ChosenPath(text2_->text(), txtSearchSpec_->currentText(), dirPath_);
    if (!path) return;
    text2_->setText(*path);
    state_.seekMode = 1;
    hide();
}

void WinSeek::CancelCmd_Click() {
    hide();
}

QString WinSeek::text2() const {
    return text2_->text();
}

bool WinSeek::SetDirPath(const QString& path) {
    const std::optional<QString> folder = OpenableFolder(path);
    if (!folder) return false;
    dirPath_ = *folder;
    ShowDirList();
    dirList_Change();
    return true;
}

void WinSeek::FillDrives() {
    QStringList roots;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady()) roots.append(volume.rootPath());
    const QStringList drives = DriveRoots(roots);
    if (drives != drives_) {
        drives_ = drives;
        disableEvent_ = true;
        drvList_->clear();
        drvList_->addItems(drives_);
        disableEvent_ = false;
    }
    ShowDriveOfDirList();
}

void WinSeek::RefreshDirList() {
    // A folder removed meanwhile gives way to the nearest one above it.
    QString path = dirPath_;
    while (!SetDirPath(path)) {
        const QString parent = QFileInfo(path).path();
        if (parent == path) return;
        path = parent;
    }
}

void WinSeek::ShowDriveOfDirList() {
    disableEvent_ = true;
    drvList_->setCurrentIndex(static_cast<int>(drives_.indexOf(DriveOf(dirPath_, drives_))));
    disableEvent_ = false;
}

void WinSeek::drvList_Change(int index) {
    if (disableEvent_ || index < 0 || index >= drives_.size()) return;
    // A drive that can't be read is passed over in silence.
    if (!SetDirPath(drives_.at(index))) ShowDriveOfDirList();
}

void WinSeek::dirList_Change() {
    // On the old drive letters the drive list always showed the folder's
    // drive; volumes mounted inside others keep that true here.
    if (!drives_.isEmpty()) ShowDriveOfDirList();
    ShowFilList();
}

void WinSeek::ShowDirList() {
    dirList_->clear();
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirIcon);
    for (const FolderRow& row : FolderRows(dirPath_, Subfolders(dirPath_))) {
        auto* item = new QListWidgetItem(row.open ? open : closed,
                                         QString(row.depth * 2, QLatin1Char(' ')) + row.label);
        item->setData(Qt::UserRole, row.path);
        dirList_->addItem(item);
        if (row.path == dirPath_) dirList_->setCurrentItem(item);
    }
}

void WinSeek::dirList_Open(QListWidgetItem* item) {
    if (!item) return;
    const QString path = item->data(Qt::UserRole).toString();
    if (path == dirPath_) return;
    // A folder gone since the list was made: show the list as it is now.
    if (!SetDirPath(path)) ShowDirList();
}

void WinSeek::dirList_LostFocus() {
    dirList_Open(dirList_->currentItem());
}

void WinSeek::ShowFilList() {
    filList_->clear();
    filList_->addItems(FilesMatching(dirPath_, pattern_));
}

void WinSeek::filList_Click(QListWidgetItem* item) {
    if (item) text2_->setText(item->text());
}

void WinSeek::filList_DblClick(QListWidgetItem* item) {
    if (!item) return;
    filList_Click(item);
    OkCmd_Click();
}

void WinSeek::txtSearchSpec_Change(const QString& text) {
    pattern_ = text;
    ShowFilList();
}

void WinSeek::closeEvent(QCloseEvent* event) {
    hide();
    if (state_.keepForms != 0)
        event->ignore();
    else
        event->accept();
}

bool WinSeek::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched == text2_ && type == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            OkCmd_Click();
            return true;
        }
        if (key == Qt::Key_Escape) {
            CancelCmd_Click();
            return true;
        }
    }
    if (type == QEvent::FocusIn || type == QEvent::FocusOut) {
        const bool in = type == QEvent::FocusIn;
        if (watched == text2_) {
            if (in) text2_->selectAll();
            SetFocusBorder(label1_, in);
        } else if (watched == txtSearchSpec_) {
            if (in) txtSearchSpec_->lineEdit()->selectAll();
            SetFocusBorder(lblCriteria_, in);
        } else if (watched == dirList_ && !in) {
            // A folder reached by the arrow keys counts as opened once the
            // focus leaves the list for another control of this window.
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                dirList_LostFocus();
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace marlith
