// Form2: the About window, a fixed modal window with the version.
#pragma once

#include <QDialog>

namespace marlith {

// "Marlith v" with the major version, ".", the minor version and the revision.
QString VersionCaption(int major, int minor, int revision);

class Form2 : public QDialog {
    Q_OBJECT
  public:
    explicit Form2(QWidget* parent = nullptr);
};

} // namespace marlith
