#include "tests/support/Ports.h"

#include <fmt/format.h>

namespace support {

std::string portKey(unsigned port, const std::string &attribute) {
    return fmt::format("{}.UserPort.0.{}.{}", attribute == "Type" ? "Config" : "Oper", port, attribute);
}

void setPort(sim::Simulator &theSwitch, unsigned port, const std::string &attribute, const std::string &value) {
    theSwitch.set(portKey(port, attribute), value, sim::Notify::no);
}

void levelPorts(sim::Simulator &theSwitch) {
    const unsigned long ports = std::stoul(theSwitch.get("Oper.Switch.MaxPorts"));
    for (unsigned port = 0; port < ports; ++port) {
        setPort(theSwitch, port, "OperState", "Online");
        setPort(theSwitch, port, "AdminState", "Online");
        setPort(theSwitch, port, "Type", "F");
        setPort(theSwitch, port, "DDM.Supported", "False");
    }
}

std::vector<unsigned> portsRead(const std::vector<std::string> &traffic) {
    constexpr unsigned mostPorts = 256;
    std::vector<unsigned> ports;
    for (const std::string &line : traffic) {
        for (unsigned port = 0; port < mostPorts; ++port) {
            if (line.rfind("get " + portKey(port, "OperState") + " ", 0) == 0)
                ports.push_back(port);
        }
    }
    return ports;
}

Wwn portName(const std::string &switchName, unsigned portNumber) {
    Wwn name("2" + switchName.substr(1));
    name.Set_Port(portNumber);
    return name;
}

} // namespace support
