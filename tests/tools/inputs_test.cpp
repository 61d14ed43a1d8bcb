#include "inputs.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <deque>
#include <thread>

#include "dfdl/buffer/dfdlbufferhandler.h"
#include "dfdl/buffer/dfdlbytebuffer.h"

namespace {

// Plays the library: takes buffers from an input, reads some bytes and gives the buffers back.
struct Reader {
    Input& input;
    std::deque<DFDLByteBufferImpl> held;

    DFDLByteBufferImpl& take() {
        held.push_back({});
        input.handler->getNextBuffer(input.handler, &held.back());
        return held.back();
    }
    // A message of `count` bytes, looked at in `ahead` buffers more than it needs.
    std::string message(size_t count, int ahead) {
        std::string text;
        while (text.size() < count) {
            DFDLByteBufferImpl& buffer = take();
            const auto size = std::min(static_cast<size_t>(buffer.size), count - text.size());
            text.append(reinterpret_cast<const char*>(buffer.data), size);
            buffer.position = static_cast<int64_t>(size);
            if (buffer.isLast) break;
            releaseRead();
        }
        while (ahead-- > 0 && (held.empty() || !held.back().isLast)) take();
        for (DFDLByteBufferImpl& buffer : held) input.handler->releaseBuffer(input.handler, &buffer);
        held.clear();
        return text;
    }
    void releaseRead() {
        while (!held.empty() && held.front().position == held.front().size) {
            input.handler->releaseBuffer(input.handler, &held.front());
            held.pop_front();
        }
    }
};

std::string digits(size_t count) {
    std::string text;
    while (text.size() < count) text += std::to_string(text.size()) + ',';
    return text.substr(0, count);
}

// All of the input in messages of `size` bytes.
std::string readAll(Input& input, size_t size, int ahead) {
    Reader reader{input, {}};
    std::string text;
    while (!Input_isUsedUp(&input)) text += reader.message(size, ahead);
    return text;
}

TEST(ToolInput, WhatAMessageLeavesIsTheBeginningOfTheNext) {
    const std::string all = digits(100);
    for (size_t piece = 1; piece <= 9; piece++) {
        for (size_t size = 1; size <= 9; size++) {
            for (int ahead = 0; ahead <= 3; ahead++) {
                Input input;
                ASSERT_TRUE(
                    Input_set(&input, reinterpret_cast<const uint8_t*>(all.data()), all.size(), piece));
                EXPECT_EQ(readAll(input, size, ahead), all) << piece << ' ' << size << ' ' << ahead;
                Input_close(&input);
            }
        }
    }
}

// A pipe that a thread fills, in writes of an odd size.
struct Pipe {
    explicit Pipe(const std::string& content) {
        EXPECT_EQ(pipe(ends), 0);
        writer = std::thread([this, content] {
            for (size_t done = 0; done < content.size();) {
                const ssize_t count =
                    write(ends[1], content.data() + done, std::min<size_t>(7777, content.size() - done));
                if (count <= 0) break;
                done += static_cast<size_t>(count);
            }
            close(ends[1]);
        });
    }
    ~Pipe() {
        writer.join();
        close(ends[0]);
    }
    std::string path() const { return "/dev/fd/" + std::to_string(ends[0]); }

    int ends[2] = {};
    std::thread writer;
};

TEST(ToolInput, APipeIsReadWholeAndKeepsOnlyWhatIsWanted) {
    const std::string all = digits(500000);
    for (const size_t piece : {size_t{0}, size_t{1000}, size_t{65536}, size_t{70000}, size_t{1000000}}) {
        Pipe source(all);
        Input input;
        ASSERT_TRUE(Input_open(&input, source.path(), piece));
        Reader reader{input, {}};
        std::string text;
        size_t most = 0;
        while (!Input_isUsedUp(&input)) {
            text += reader.message(12345, 1);
            most = std::max(most, input.blocks.size());
        }
        EXPECT_TRUE(text == all) << piece;
        EXPECT_LE(most, 4U) << piece;
        Input_close(&input);
    }
}

TEST(ToolInput, PiecesHaveTheSizeThatWasAskedFor) {
    const std::string all = digits(200000);
    Pipe source(all);
    Input input;
    ASSERT_TRUE(Input_open(&input, source.path(), 3000));
    Reader reader{input, {}};
    int64_t total = 0;
    while (true) {
        const DFDLByteBufferImpl& buffer = reader.take();
        total += buffer.size;
        if (buffer.isLast) break;
        ASSERT_TRUE(buffer.size == 3000 || total == 200000) << total;
    }
    EXPECT_EQ(total, 200000);
    Input_close(&input);
}

TEST(ToolInput, AFolderIsNoInput) {
    Input input;
    EXPECT_FALSE(Input_open(&input, "/", 0));
    EXPECT_EQ(errno, EISDIR);
}

}  // namespace
