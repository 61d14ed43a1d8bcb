#ifndef DFDL_TOOLS_OUTPUT_H
#define DFDL_TOOLS_OUTPUT_H

#include <string>

// Collects text and writes it in large pieces. Made by a command, it lives as long as the command.
//
// What cannot be written ends the process at once: no callback of the library can stop a parse, and reading
// on would serve nobody. A reader that went away has what it wanted: status 0 and no message.
struct Output {
    std::string text;     // not yet written
    int descriptor = -1;  // -1: nothing is ever written, everything stays in `text`
};

// "-" or an empty path is standard output. False if the file cannot be made; errno tells why.
bool Output_open(Output* this_, const std::string& path);
void Output_flush(Output* this_);
// Flushes, and ends the process if the file cannot be closed well.
void Output_close(Output* this_);

// To be called behind a whole line, so that a line never shows in part.
inline void Output_endLine(Output* this_) {
    constexpr size_t enough = 64 * 1024;
    if (this_->text.size() >= enough && this_->descriptor >= 0) Output_flush(this_);
}

#endif
