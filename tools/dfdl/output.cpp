#include "output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "status.h"

namespace {

[[noreturn]] void giveUp() {
    if (errno == EPIPE) _exit(STATUS_PARSED);
    fprintf(stderr, "dfdl: cannot write the output: %s\n", strerror(errno));
    _exit(STATUS_USAGE);
}

}  // namespace

bool Output_open(Output* this_, const std::string& path) {
    if (path.empty() || path == "-") {
        this_->descriptor = STDOUT_FILENO;
    } else {
        this_->descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    }
    return this_->descriptor >= 0;
}

void Output_flush(Output* this_) {
    if (this_->descriptor < 0) return;
    for (size_t done = 0; done < this_->text.size();) {
        const ssize_t written =
            write(this_->descriptor, this_->text.data() + done, this_->text.size() - done);
        if (written < 0 && errno != EINTR) giveUp();
        if (written > 0) done += static_cast<size_t>(written);
    }
    this_->text.clear();
}

void Output_close(Output* this_) {
    Output_flush(this_);
    if (this_->descriptor > STDOUT_FILENO && close(this_->descriptor) != 0) giveUp();
    this_->descriptor = -1;
}
