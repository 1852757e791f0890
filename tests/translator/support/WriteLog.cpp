#include "tests/translator/support/WriteLog.h"

#include <utility>

namespace TestSupport {

namespace {

// Trivially destroyed, because objects with static lifetime write until the process ends.
constinit WriteLog * innermost = nullptr;

}  // namespace

std::string Write::text() const {
    std::string text = target + " " + mutator + "(";
    for (std::size_t i = 0; i < arguments.size(); ++i) text += (i == 0 ? "" : ", ") + arguments[i];
    return text + ")";
}

WriteLog::WriteLog() : outer_(std::exchange(innermost, this)) {}

WriteLog::~WriteLog() { innermost = outer_; }

Lines WriteLog::lines() const {
    Lines lines;
    for (Write const & write : writes_) lines.push_back(write.text());
    return lines;
}

Lines WriteLog::linesOf(std::string_view mutator) const {
    Lines lines;
    for (Write const & write : writes_) {
        if (write.mutator == mutator) lines.push_back(write.text());
    }
    return lines;
}

Lines WriteLog::linesInto(std::string_view target) const {
    Lines lines;
    for (Write const & write : writes_) {
        if (write.target == target) lines.push_back(write.text());
    }
    return lines;
}

Lines WriteLog::taken() {
    Lines const lines = this->lines();
    clear();
    return lines;
}

bool WriteLog::isRecording() { return innermost != nullptr; }

void WriteLog::record(Write const & write) {
    for (WriteLog * log = innermost; log; log = log->outer_) log->writes_.push_back(write);
    for (WriteLog * log = innermost; log; log = log->outer_) {
        if (log->beforeWrite_) log->beforeWrite_(write);
    }
}

}  // namespace TestSupport
