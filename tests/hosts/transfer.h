/// A TCP transfer between two hosts.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

#include "tests/hosts/network.h"

/// Sends from one host to another as fast as TCP goes, until it is told to stop. Hosts must outlive
/// it.
class Transfer {
public:
    static constexpr std::uint16_t kPort = 7000; ///< of TCP, at the receiver

    /// @param address the receiver's, e.g. "192.0.2.2".
    Transfer(const Host& sender, const Host& receiver, const std::string& address);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
    ~Transfer();

    /// Bytes that have arrived.
    std::uint64_t received() const { return received_; }
    /// Whether everything that arrived was what had been sent.
    bool intact() const { return intact_; }
    /// Lets the sender finish and the receiver read to the end.
    /// @return whether all that was sent has arrived.
    bool finish();

private:
    void send(const Host& host, const std::string& address);
    void receive(const Host& host, const std::string& address);

    std::atomic<bool> listening_{false}, stopping_{false}, intact_{true};
    std::atomic<std::uint64_t> sent_{0}, received_{0};
    std::thread receiver_, sender_;
};
