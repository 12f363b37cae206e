#include "gui/file_chooser.h"

#include "chooser/chooser_rules.h"
#include "core/app_state.h"
#include "gui/child_window_place.h"
#include "gui/widget_geometry.h"
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

FileChooser::FileChooser(AppState& state, QWidget* parent) : QDialog(parent), state_(state) {
    setObjectName(QStringLiteral("fileChooser"));
    setFixedSize(kClientWidth / kTwipsPerPixel, kClientHeight / kTwipsPerPixel);

    chooserPanel_ = new QWidget(this);
    chooserPanel_->setObjectName(QStringLiteral("chooserPanel"));
    filterLabel_ = new QLabel(QStringLiteral("Search &Criteria:"), chooserPanel_);
    filterLabel_->setObjectName(QStringLiteral("filterLabel"));
    filterBox_ = new QComboBox(chooserPanel_);
    filterBox_->setObjectName(QStringLiteral("filterBox"));
    filterBox_->setEditable(true);
    // A pattern is typed as it stands: no completion, no growing list.
    filterBox_->setCompleter(nullptr);
    filterBox_->setInsertPolicy(QComboBox::NoInsert);
    filterBox_->setEditText(QStringLiteral("*.bmp"));
    filterLabel_->setBuddy(filterBox_);
    driveBox_ = new QComboBox(chooserPanel_);
    driveBox_->setObjectName(QStringLiteral("driveBox"));
    folderList_ = new QListWidget(chooserPanel_);
    folderList_->setObjectName(QStringLiteral("folderList"));
    fileList_ = new QListWidget(chooserPanel_);
    fileList_->setObjectName(QStringLiteral("fileList"));
    nameLabel_ = new QLabel(QStringLiteral("File:"), chooserPanel_);
    nameLabel_->setObjectName(QStringLiteral("nameLabel"));
    nameEdit_ = new QLineEdit(chooserPanel_);
    nameEdit_->setObjectName(QStringLiteral("nameEdit"));
    nameLabel_->setBuddy(nameEdit_);
    okButton_ = new QPushButton(QStringLiteral("O&k"), chooserPanel_);
    okButton_->setObjectName(QStringLiteral("okButton"));
    closeButton_ = new QPushButton(QStringLiteral("Cl&ose"), chooserPanel_);
    closeButton_->setObjectName(QStringLiteral("closeButton"));
    // Enter means Ok in the name box only, not wherever the focus is.
    okButton_->setAutoDefault(false);
    closeButton_->setAutoDefault(false);

    filterLabel_->setGeometry(twipsRect(120, 60, 2535, 240));
    filterBox_->setGeometry(twipsRect(120, 315, 2535, 330));
    fileList_->setGeometry(twipsRect(120, 735, 2535, 1890));
    driveBox_->setGeometry(twipsRect(2760, 315, 2535, 330));
    folderList_->setGeometry(twipsRect(2760, 735, 2535, 1890));
    nameLabel_->setGeometry(twipsRect(120, 2775, 480, 300));
    nameEdit_->setGeometry(twipsRect(615, 2760, 2040, 330));
    okButton_->setGeometry(twipsRect(2760, 2745, 1215, 360));
    closeButton_->setGeometry(twipsRect(4080, 2745, 1215, 360));

    connect(filterBox_, &QComboBox::editTextChanged, this, &FileChooser::setFilePattern);
    connect(driveBox_, &QComboBox::currentIndexChanged, this, &FileChooser::changeDrive);
    connect(folderList_, &QListWidget::itemActivated, this, &FileChooser::openFolderItem);
    connect(fileList_, &QListWidget::itemClicked, this, &FileChooser::takeFileName);
    connect(fileList_, &QListWidget::itemSelectionChanged, this, [this] {
        const QList<QListWidgetItem*> chosen = fileList_->selectedItems();
        if (!chosen.isEmpty()) takeFileName(chosen.front());
    });
    connect(fileList_, &QListWidget::itemDoubleClicked, this, &FileChooser::takeFileNameAndConfirm);
    connect(okButton_, &QPushButton::clicked, this, &FileChooser::confirm);
    connect(closeButton_, &QPushButton::clicked, this, &FileChooser::cancel);
    for (QObject* watched : {static_cast<QObject*>(nameEdit_), static_cast<QObject*>(filterBox_),
                             static_cast<QObject*>(folderList_)})
        watched->installEventFilter(this);

    createControls();
    // The lists start in the working directory, the program's folder.
    if (!setFolderPath(QDir::currentPath())) setFolderPath(QStringLiteral("/"));
    fillDrives();
}

void FileChooser::createControls() {
    chooserPanel_->setGeometry(0, 0, width(), kClientHeight / kTwipsPerPixel);
    const QColor back = palette().color(QPalette::Window);
    for (QWidget* widget : {chooserPanel_, static_cast<QWidget*>(filterLabel_)}) {
        QPalette colours = widget->palette();
        colours.setColor(QPalette::Window, back);
        widget->setPalette(colours);
        widget->setAutoFillBackground(true);
    }
}

void FileChooser::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    // Restoring a minimised window is no new use.
    if (!event->spontaneous()) prepareForMode();
}

void FileChooser::prepareForMode() {
    const QString lastFilter = filterBox_->currentText();
    confirmed_ = false;
    filterBox_->clear();

    const std::optional<ChooserEntry> entry = chooserEntryFor(mode_, lastFilter, suggestedName_);
    if (entry) {
        filterBox_->addItems(entry->filters);
        filterBox_->setEditText(entry->filter);
        nameEdit_->setText(entry->name);
        setWindowTitle(entry->caption);
    } else {
        filterBox_->setEditText(lastFilter);
    }

    // Drives, folders and files may have come and gone since the last use.
    fillDrives();
    refreshFolderList();
    nameEdit_->setFocus();
}

void FileChooser::confirm() {
    const std::optional<QString> path =
        chosenPath(nameEdit_->text(), filterBox_->currentText(), folderPath_);
    if (!path) return;
    nameEdit_->setText(*path);
    confirmed_ = true;
    hide();
}

void FileChooser::cancel() {
    hide();
}

std::optional<QString> FileChooser::choose(ChooserMode mode, const QString& suggestedName) {
    setMode(mode, suggestedName);
    exec();
    return choice();
}

void FileChooser::setMode(ChooserMode mode, const QString& suggestedName) {
    mode_ = mode;
    suggestedName_ = suggestedName;
    confirmed_ = false;
}

std::optional<QString> FileChooser::choice() const {
    if (!confirmed_) return std::nullopt;
    return nameEdit_->text();
}

QString FileChooser::nameText() const {
    return nameEdit_->text();
}

bool FileChooser::setFolderPath(const QString& path) {
    const std::optional<QString> folder = openableFolder(path);
    if (!folder) return false;
    folderPath_ = *folder;
    showFolderList();
    openFolder();
    return true;
}

void FileChooser::fillDrives() {
    QStringList roots;
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes())
        if (volume.isValid() && volume.isReady()) roots.append(volume.rootPath());
    const QStringList drives = driveRoots(roots);
    if (drives != drives_) {
        drives_ = drives;
        driveBoxQuiet_ = true;
        driveBox_->clear();
        driveBox_->addItems(drives_);
        driveBoxQuiet_ = false;
    }
    showDriveOfFolder();
}

void FileChooser::refreshFolderList() {
    // A folder removed meanwhile gives way to the nearest one above it.
    QString path = folderPath_;
    while (!setFolderPath(path)) {
        const QString parent = QFileInfo(path).path();
        if (parent == path) return;
        path = parent;
    }
}

void FileChooser::showDriveOfFolder() {
    driveBoxQuiet_ = true;
    driveBox_->setCurrentIndex(static_cast<int>(drives_.indexOf(driveOf(folderPath_, drives_))));
    driveBoxQuiet_ = false;
}

void FileChooser::changeDrive(int index) {
    if (driveBoxQuiet_ || index < 0 || index >= drives_.size()) return;
    // A drive that can't be read is passed over in silence.
    if (!setFolderPath(drives_.at(index))) showDriveOfFolder();
}

void FileChooser::openFolder() {
    // On the old drive letters the drive list always showed the folder's
    // drive; volumes mounted inside others keep that true here.
    if (!drives_.isEmpty()) showDriveOfFolder();
    showFileList();
}

void FileChooser::showFolderList() {
    folderList_->clear();
    const QIcon open = style()->standardIcon(QStyle::SP_DirOpenIcon);
    const QIcon closed = style()->standardIcon(QStyle::SP_DirIcon);
    for (const FolderRow& row : folderRows(folderPath_, subfolders(folderPath_))) {
        auto* item = new QListWidgetItem(row.open ? open : closed,
                                         QString(row.depth * 2, QLatin1Char(' ')) + row.label);
        item->setData(Qt::UserRole, row.path);
        folderList_->addItem(item);
        if (row.path == folderPath_) folderList_->setCurrentItem(item);
    }
}

void FileChooser::openFolderItem(QListWidgetItem* item) {
    if (!item) return;
    const QString path = item->data(Qt::UserRole).toString();
    if (path == folderPath_) return;
    // A folder gone since the list was made: show the list as it is now.
    if (!setFolderPath(path)) showFolderList();
}

void FileChooser::openHighlightedFolder() {
    openFolderItem(folderList_->currentItem());
}

void FileChooser::showFileList() {
    fileList_->clear();
    fileList_->addItems(filesMatching(folderPath_, pattern_));
}

void FileChooser::takeFileName(QListWidgetItem* item) {
    if (item) nameEdit_->setText(item->text());
}

void FileChooser::takeFileNameAndConfirm(QListWidgetItem* item) {
    if (!item) return;
    takeFileName(item);
    confirm();
}

void FileChooser::setFilePattern(const QString& text) {
    pattern_ = text;
    showFileList();
    // The name follows the image format picked, so that it writes that format.
    if (mode_ != ChooserMode::SaveImage) return;
    const QString name = nameForImageFilter(nameEdit_->text(), text);
    if (name != nameEdit_->text()) nameEdit_->setText(name);
}

void FileChooser::closeEvent(QCloseEvent* event) {
    hideOnClose(*this, *event, state_.mainWindowAlive);
}

bool FileChooser::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (watched == nameEdit_ && type == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            confirm();
            return true;
        }
        if (key == Qt::Key_Escape) {
            cancel();
            return true;
        }
    }
    if (type == QEvent::FocusIn || type == QEvent::FocusOut) {
        const bool in = type == QEvent::FocusIn;
        if (watched == nameEdit_) {
            if (in) nameEdit_->selectAll();
            setFocusBorder(nameLabel_, in);
        } else if (watched == filterBox_) {
            if (in) filterBox_->lineEdit()->selectAll();
            setFocusBorder(filterLabel_, in);
        } else if (watched == folderList_ && !in) {
            // A folder reached by the arrow keys counts as opened once the
            // focus leaves the list for another control of this window.
            const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
            if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
                openHighlightedFolder();
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace marlith
