// An outside program started for a run: working folder the program folder,
// an argument list and never a shell. What it writes on its standard output
// and error is kept (the last part of it), to be shown when it ends without
// a result.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>

class QProcess;

namespace marlith {

class EngineProcess {
  public:
    EngineProcess();
    // A program still at work when its window goes is ended with it.
    ~EngineProcess();
    EngineProcess(const EngineProcess&) = delete;
    EngineProcess& operator=(const EngineProcess&) = delete;

    // False when the program isn't an executable file or doesn't start.
    // Standard input comes from inputFile, or from nothing when it is empty.
    bool start(const QString& program, const QStringList& arguments, const QString& folder,
               const QString& inputFile = {});
    bool running() const;
    // Its output so far, standard output and error together.
    QByteArray output();
    // How it ended: "exit status 0", "killed by the system"; empty while it runs.
    QString endText() const;
    // Ends the program at once.
    void stop();

  private:
    std::unique_ptr<QProcess> process_;
    QByteArray output_;
};

} // namespace marlith
