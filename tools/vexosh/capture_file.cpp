#include "tools/vexosh/capture_file.h"

#include <pcap/pcap.h>

#include <memory>

namespace vexosh {

Capture read_capture(const std::string& path)
{
    char error[PCAP_ERRBUF_SIZE] = {};
    const std::unique_ptr<pcap_t, void (*)(pcap_t*)> file(pcap_open_offline(path.c_str(), error),
                                                          pcap_close);
    if (!file) {
        throw BadInput("cannot read capture '" + path + "': " + error);
    }
    if (pcap_datalink(file.get()) != DLT_EN10MB) {
        throw BadInput("capture '" + path + "' is not of an Ethernet");
    }
    Capture capture;
    pcap_pkthdr* header = nullptr;
    const u_char* data = nullptr;
    int result = 0;
    while ((result = pcap_next_ex(file.get(), &header, &data)) == 1) {
        capture.frames.emplace_back(data, data + header->caplen);
    }
    if (result == PCAP_ERROR) {
        capture.notice = std::string("the capture ends early: ") + pcap_geterr(file.get());
    }
    return capture;
}

} // namespace vexosh
