// An installed copy: the files where a Linux desktop looks for them, and a
// first start that keeps its settings in the user's data folder, never in bin.
#include "support/file_bytes.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

class TstInstall : public QObject {
    Q_OBJECT
  private Q_SLOTS:
    void installedAndStarted() {
        QTemporaryDir root;
        const QString prefix = root.path() + QStringLiteral("/prefix");
        QProcess install;
        install.start(QStringLiteral(MARLITH_CMAKE),
                      {QStringLiteral("--install"), QStringLiteral(MARLITH_BUILD_DIR),
                       QStringLiteral("--prefix"), prefix});
        QVERIFY(install.waitForFinished(60000));
        QCOMPARE(install.exitCode(), 0);
        for (const char* file :
             {"bin/marlith", "share/marlith/Marlith.ini", "share/marlith/marlith.html",
              "share/marlith/py.dat", "share/marlith/NotoSansSymbols2-Regular.ttf",
              "share/applications/marlith.desktop", "share/icons/hicolor/128x128/apps/marlith.png"})
            QVERIFY2(QFile::exists(prefix + u'/' + QLatin1String(file)), file);
        const QString home = root.path() + QStringLiteral("/home");
        QDir().mkpath(home);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("MARLITH_HOME"));
        env.remove(QStringLiteral("XDG_DATA_HOME"));
        env.insert(QStringLiteral("HOME"), home);
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        QProcess program;
        program.setProcessEnvironment(env);
        program.start(prefix + QStringLiteral("/bin/marlith"), {});
        QVERIFY(program.waitForStarted(10000));
        // Whatever the rights on bin, root's too.
        const QString folder = home + QStringLiteral("/.local/share/marlith");
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(folder + QStringLiteral("/Marlith.lock")), 20000);
        // The first start brought the shipped styles along.
        QVERIFY(QFile::exists(folder + QStringLiteral("/wood40.bmp")));
        program.terminate();
        QVERIFY(program.waitForFinished(20000));
        QVERIFY(marlith::testing::readFile(folder + QStringLiteral("/Marlith.ini"))
                    .contains("RecentStyle = Classic"));
        QCOMPARE(QDir(prefix + QStringLiteral("/bin")).entryList(QDir::Files),
                 QStringList{QStringLiteral("marlith")});
    }
};

QTEST_GUILESS_MAIN(TstInstall)
#include "tst_install.moc"
