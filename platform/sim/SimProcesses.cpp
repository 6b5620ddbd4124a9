#include "platform/sim/SimProcesses.h"

#include "base/JsonText.h"

namespace tarnwick::sim {

std::optional<std::string> SimProcesses::run(const std::string& path,
                                             const std::vector<std::string>& args, bool) {
    w_.dispatch.requireMain("Processes::run");
    std::string command = bareOrQuoted(path);
    for (const auto& a : args)
        command += " " + bareOrQuoted(a);
    if (auto error = w_.takeFailure(SimWorld::Operation::exec)) {
        // Nothing started, so no `exec` line; the attempt is still on record.
        w_.transcript.line("exec-failed", command + " " + tarnwick::quoted(*error));
        return error;
    }
    w_.transcript.line("exec", command);
    return std::nullopt;
}

void SimProcesses::terminate(int32_t pid) {
    w_.dispatch.requireMain("Processes::terminate");
    if (pid == SimWorld::ownPid) return quit();
    w_.transcript.line("terminate", std::to_string(pid));
    w_.endProcess(pid);
}

void SimProcesses::quit() {
    w_.dispatch.requireMain("Processes::quit");
    w_.transcript.line("quit", "");
    w_.dispatch.stop();
}

} // namespace tarnwick::sim
