#pragma once
// Reading files that may not answer: their disk is waking up, or the network behind them has gone. The kernel
// lets nobody out of such a read, for minutes or for ever, so it is done by a thread that can be left behind.

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <thread>

#include "base/DoneSignal.h"

// So long a read may take before that is told. No events are handled meanwhile: most take milliseconds.
inline std::chrono::milliseconds readPatience = std::chrono::seconds(3);

// What read() returns. When it has not returned for readPatience, goOn() tells whether to wait as long again;
// where not, nothing is returned, and whatever becomes of the read is dropped. It may come to its end after
// everything else, so all that it uses has to be its own.
template <class Result>
std::optional<Result> ReadPatiently(std::function<Result()> read, const std::function<bool()>& goOn) {
    struct Reading {
        std::optional<Result> result;
        std::exception_ptr failure;
        DoneSignal done;
    };
    const auto reading = std::make_shared<Reading>();
    try {
        std::thread([reading, read = std::move(read)] {
            try {
                reading->result = read();
            } catch (...) {
                reading->failure = std::current_exception();
            }
            reading->done.Give();
        }).detach();
    } catch (const std::system_error&) {  // no more threads can be had
        return std::nullopt;
    }
    while (!reading->done.WaitFor(readPatience)) {
        if (!goOn()) return std::nullopt;
    }
    if (reading->failure) std::rethrow_exception(reading->failure);
    return std::move(reading->result);
}
