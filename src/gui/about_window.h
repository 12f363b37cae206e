// The About window, a fixed modal window with the version and the folder
// where the program keeps its files.
#pragma once

#include <QDialog>

namespace marlith {

// "Marlith v" with the major version, ".", the minor version and the revision.
QString versionCaption(int major, int minor, int revision);

class AboutWindow : public QDialog {
    Q_OBJECT
  public:
    explicit AboutWindow(const QString& programFolder, QWidget* parent = nullptr);
};

} // namespace marlith
