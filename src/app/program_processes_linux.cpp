#include "app/program_processes_linux.h"

#include <signal.h>
#include <unistd.h>

#include <QFileInfo>
#include <QProcess>
#include <QStringList>

namespace vantle {

int LinuxProgramProcesses::currentProcessId() const {
    return static_cast<int>(::getpid());
}

bool LinuxProgramProcesses::running(int processId) const {
    return ::kill(processId, 0) == 0;
}

std::optional<std::string> LinuxProgramProcesses::startCopy(const std::vector<std::string>& arguments) {
    QProcess process;
    process.setProgram(QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath());
    QStringList list;
    for (const std::string& argument : arguments) {
        list << QString::fromStdString(argument);
    }
    process.setArguments(list);
    if (!process.startDetached()) {
        return process.errorString().toStdString();
    }
    return std::nullopt;
}

}  // namespace vantle
