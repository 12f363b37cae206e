// The program's own file window, shown modally by every command
// that picks a file. It is hidden, not destroyed, between uses, so that it
// keeps its drive, folder and filter; each use returns the path chosen, or
// nothing when the window was left without Ok.
#pragma once

#include "chooser/chooser_rules.h"

#include <QDialog>
#include <QStringList>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;

namespace marlith {

struct AppState;

class FileChooser : public QDialog {
    Q_OBJECT
  public:
    explicit FileChooser(AppState& state, QWidget* parent = nullptr);

    // One use, run modally: the full path chosen with Ok, or nothing. A
    // suggested name stands for the one the purpose proposes.
    std::optional<QString> choose(ChooserMode mode, const QString& suggestedName = {});
    // Starts a use without running it (for callers that drive the window
    // themselves): the purpose of the next showing, and no answer yet.
    void setMode(ChooserMode mode, const QString& suggestedName = {});
    // The answer of the current use: the full path once Ok closed the
    // window, nothing while it is open or after it was left without Ok.
    std::optional<QString> choice() const;

    // Runs at every showing: list, filter, name and caption for the mode.
    void prepareForMode();
    void confirm();
    void cancel();

    // The folder of the lists; false (and no change) when it can't be opened.
    bool setFolderPath(const QString& path);
    QString folderPath() const { return folderPath_; }
    // The name box: on return after Ok, the full path.
    QString nameText() const;

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void createControls();
    void changeDrive(int index);
    void openFolder();
    void openHighlightedFolder();
    void openFolderItem(QListWidgetItem* item);
    void takeFileName(QListWidgetItem* item);
    void takeFileNameAndConfirm(QListWidgetItem* item);
    void setFilePattern(const QString& text);
    void fillDrives();
    void showFolderList();
    void refreshFolderList();
    void showFileList();
    void showDriveOfFolder();

    AppState& state_;
    QWidget* chooserPanel_;
    QLabel* filterLabel_;
    QComboBox* filterBox_;
    QComboBox* driveBox_;
    QListWidget* folderList_;
    QListWidget* fileList_;
    QLabel* nameLabel_;
    QLineEdit* nameEdit_;
    QPushButton* okButton_;
    QPushButton* closeButton_;
    QStringList drives_;
    QString folderPath_;
    QString pattern_ = QStringLiteral("*.bmp");
    ChooserMode mode_ = ChooserMode::SaveImage;
    QString suggestedName_;
    bool confirmed_ = false;
    // Keeps the drive list quiet while code sets it.
    bool driveBoxQuiet_ = false;
};

} // namespace marlith
