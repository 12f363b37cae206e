#include "engines/engine_process.h"

#include <QFileInfo>
#include <QProcess>

namespace marlith {

EngineProcess::EngineProcess() = default;

EngineProcess::~EngineProcess() {
    stop();
}

void EngineProcess::stop() {
    if (running()) {
        process_->kill();
        process_->waitForFinished(1000);
    }
}

bool EngineProcess::start(const QString& program, const QStringList& arguments,
                          const QString& folder, const QString& inputFile) {
    if (program.isEmpty() || !QFileInfo(program).isExecutable()) return false;
    stop();
    process_ = std::make_unique<QProcess>();
    process_->setWorkingDirectory(folder);
    process_->setStandardInputFile(inputFile.isEmpty() ? QProcess::nullDevice() : inputFile);
    process_->setStandardOutputFile(QProcess::nullDevice());
    process_->setStandardErrorFile(QProcess::nullDevice());
    process_->start(program, arguments);
    return process_->waitForStarted(5000);
}

bool EngineProcess::running() const {
    return process_ && process_->state() != QProcess::NotRunning;
}

} // namespace marlith
