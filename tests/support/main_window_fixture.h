// A fresh program folder, state and main window for each case of a GUI test.
#pragma once

#include "chooser/file_chooser.h"
#include "core/main_window.h"
#include "core/tool_image.h"
#include "drawing/diagram_view.h"

#include <QAction>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

namespace marlith::testing {

struct Fixture {
    QTemporaryDir dir;
    QString home; // the program folder: dir unless another is given
    AppState state;
    std::unique_ptr<Form1> form;
    QList<QStringList> instances; // arguments of further instances started
    QStringList warnings;
    QLineEdit* text1 = nullptr;
    QLabel* label3 = nullptr;

    explicit Fixture(const QStringList& arguments = {}, const QByteArray& settings = {},
                     const QString& folder = {})
        : home(folder.isEmpty() ? dir.path() : folder) {
        qputenv("MARLITH_HOME", home.toUtf8());
        QFile ini(home + QStringLiteral("/Marlith.ini"));
        if (!settings.isEmpty() && ini.open(QIODevice::WriteOnly)) ini.write(settings);
        ini.close();
        form = std::make_unique<Form1>(state);
        form->startInstance = [this](const QStringList& rest) { instances.append(rest); };
        form->warn = [this](const QString& text) { warnings.append(text); };
        // A command that opens the file chooser finds it closed at once.
        form->runChooser = [](WinSeek& chooser) {
            chooser.show();
            chooser.CancelCmd_Click();
        };
        form->Form_Load(arguments);
        form->show();
        form->activateWindow();
        text1 = form->findChild<QLineEdit*>(QStringLiteral("Text1"));
        label3 = form->findChild<QLabel*>(QStringLiteral("Label3"));
    }
    QString folder() const { return home + QLatin1Char('/'); }
    void type(const QString& keys) { QTest::keyClicks(text1, keys); }
    QAction* action(const char* name) const { return form->action(QLatin1String(name)); }
    DiagramView* picMain() const { return form->picMain(); }
    ToolImage* tool(const char* name) const {
        return form->findChild<ToolImage*>(QLatin1String(name));
    }
    QComboBox* combo1() const { return form->findChild<QComboBox*>(QStringLiteral("Combo1")); }
};

} // namespace marlith::testing
