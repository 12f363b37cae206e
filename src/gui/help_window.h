// The help window: the program's own help page.
#pragma once

#include <QWidget>

class QTextBrowser;

namespace marlith {

class HelpWindow : public QWidget {
    Q_OBJECT
  public:
    explicit HelpWindow(QWidget* parent = nullptr);
    // Shows the page; false when it can't be read.
    bool open(const QString& path);

  private:
    QTextBrowser* browser_;
};

} // namespace marlith
