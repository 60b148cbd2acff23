#include "rmi/Call.h"

#include "platform/ClientCallHelper.h"
#include "rmi/CallHooks.h"

namespace {

// The three hooks of one call, over its shape.
class ShapeCallHook final : public ClientCallHookBaseV {
public:
    ShapeCallHook(CallShape const& shape, TreflectServerObject* server, road::Invoke invoke, void* result,
                  CallShape::Places places)
        : shape_(shape), server_(server), invoke_(invoke), result_(result), places_(places)
    {
    }

    void call() const override { invoke_(*server_, result_, places_); }
    void generateParams(TipprmiSequence<TipprmiAny>& list) const override { shape_.appendAll(list, places_); }
    void insertResult(TipprmiSequence<TipprmiAny>& list) const override
    {
        if (shape_.result != nullptr) {
            appendParam(list, *shape_.result, result_);
        }
        generateParams(list);
    }
    void generateRequestStream(TipprmiStream& stream) const override { shape_.writeAll(stream, places_); }
    void evaluateResponse(TipprmiStream& stream) const override
    {
        if (shape_.result != nullptr) {
            shape_.result->read(stream, result_);
        }
    }

private:
    CallShape const& shape_;
    TreflectServerObject* server_;
    road::Invoke invoke_;
    void* result_;
    CallShape::Places places_;
};

class ShapeInParamHook final : public InParamHook {
public:
    ShapeInParamHook(CallShape const& shape, CallShape::Places places) : shape_(shape), places_(places) {}
    void handleParams(TipprmiStream& request) const override { shape_.writeIn(request, places_); }

private:
    CallShape const& shape_;
    CallShape::Places places_;
};

class ShapeOutParamHook final : public OutParamHook {
public:
    ShapeOutParamHook(CallShape const& shape, CallShape::Places places) : shape_(shape), places_(places) {}
    void handleParams(TipprmiStream& reply) const override { shape_.readOut(reply, places_); }

private:
    CallShape const& shape_;
    CallShape::Places places_;
};

} // namespace

void road::carry(TipprmiObjectClient const& proxy, CallShape const& shape, Target target, Invoke invoke, void* result,
                 CallShape::Places places)
{
    TreflectObjectStub& stub = *proxy.getStub_();
    TreflectServerObject* server = invoke != nullptr ? stub.getLocalServer() : nullptr;
    if (server != nullptr && !server->implements(target.classId)) {
        server = nullptr;
    }
    ShapeCallHook const hook(shape, server, invoke, result, places);
    ShapeInParamHook const in(shape, places);
    ShapeOutParamHook const out(shape, places);
    ClientCallHelper(hook, in, out, stub, server, target.classId, target.opIndex, true);
}
