// The smallest library with the journal's factories. The service writes what it was told through a proxy's channel, so that
// a test sees that the pointers it got are the bases that they were cast to.

#include "platform/framework/Invoker.h"
#include "platform/framework/InvokerResponse.h"
#include "platform/framework/Proxy.h"
#include "platform/framework/ProxyRequest.h"
#include "platform/framework/Service.h"

#define EXPORTED extern "C" __attribute__((visibility("default")))

namespace {

/// Something with virtual operations in front of the framework's base, so that the base is not where the object begins.
class InFront {
public:
    InFront() = default;
    InFront(const InFront&) = delete;
    InFront& operator=(const InFront&) = delete;
    virtual ~InFront() = default;
    virtual void unused() {}
};

class SmallService final : public InFront, public Service {
public:
    void run() override { m_ran = true; }
    void timerEvent(int) override { m_ran = false; }

private:
    bool m_ran = false;
};

class SmallInvoker final : public InFront, public Invoker {
public:
    void handleMessage(Executable* target, const char* message, int length,
                       InvokerResponse* response) override {
        if (dynamic_cast<SmallService*>(target) != nullptr) {
            response->setPayload(message, length);
        }
        response->complete();
    }
    void initInvoker(FrameworkContext*) override {}
};

class SmallProxy final : public InFront, public Proxy {
public:
    void initProxy(ProxyRequest& request) override { request.send("proxy is there"); }
};

}  // namespace

EXPORTED void* createJournalService();
EXPORTED void* createJournalServiceInvoker();
EXPORTED void* createJournalServiceObserverProxy();
EXPORTED void* createContactGetterInvoker();

void* createJournalService() {
    return static_cast<Service*>(new SmallService);
}

void* createJournalServiceInvoker() {
    return static_cast<Invoker*>(new SmallInvoker);
}

void* createJournalServiceObserverProxy() {
    return static_cast<Proxy*>(new SmallProxy);
}

void* createContactGetterInvoker() {
    return static_cast<Invoker*>(new SmallInvoker);
}
