/*
 * A switch of this process as its server knows it.
 *
 * Thread-safe.
 */
#ifndef SIM_API_SERVEDSWITCH_H
#define SIM_API_SERVEDSWITCH_H

#include "sim/core/Endpoint.h"
#include "sim/serve/Served.h"

namespace sim {

class ServedSwitch final : public Served {
public:
    explicit ServedSwitch(std::shared_ptr<Endpoint> endpoint) : _endpoint(std::move(endpoint)) {}

    zov_handle_t newCaller() override { return --_endpoint->lastCaller; }
    int32_t connect(zov_handle_t caller, const char *host, const char *client, const char *text,
                    zov_handle_t *handle) override;
    std::shared_ptr<Connection> connection(zov_handle_t handle) override;
    void acknowledge(zov_handle_t handle) override;
    void hangUp(zov_handle_t handle) override;
    void disconnect(zov_handle_t handle) override;

    std::string savedState() const override;
    void restoreState(const std::string &text) override;

private:
    const std::shared_ptr<Endpoint> _endpoint;
};

} // namespace sim

#endif // SIM_API_SERVEDSWITCH_H
