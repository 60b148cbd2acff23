#include "rmi/Dispatch.h"

#include <algorithm>
#include <memory>

namespace {

// Room for the values of one call, each constructed as before a call. Few calls need more than the room on the stack.
class Values {
public:
    explicit Values(CallShape const& shape) : shape_(shape)
    {
        std::size_t size = 0;
        forEachType([&size](ValueType const& type, std::size_t) { size = placeAfter(size, type) + type.size; });
        if (size > sizeof room_) {
            large_ = std::make_unique<std::byte[]>(size);
        }
        forEachPlace([this](ValueType const& type, void* place, std::size_t i) {
            places_[i] = place;
            type.construct(place);
        });
    }
    Values(Values const&) = delete;
    Values& operator=(Values const&) = delete;
    ~Values()
    {
        // What was put there in their place is another's.
        forEachPlace([](ValueType const& type, void* place, std::size_t) { type.destroy(place); });
    }

    void* result() const { return places_[CallShape::mostArguments]; }
    void** arguments() { return places_; }

private:
    template <class Visitor>
    void forEachType(Visitor visit) const
    {
        for (std::size_t i = 0; i < shape_.count; ++i) {
            visit(*shape_.arguments[i].type, i);
        }
        if (shape_.result != nullptr) {
            visit(*shape_.result, CallShape::mostArguments);
        }
    }
    template <class Visitor>
    void forEachPlace(Visitor visit)
    {
        std::byte* const start = large_ ? large_.get() : room_;
        std::size_t used = 0;
        forEachType([&](ValueType const& type, std::size_t i) {
            std::size_t const offset = placeAfter(used, type);
            visit(type, start + offset, i);
            used = offset + type.size;
        });
    }
    static std::size_t placeAfter(std::size_t used, ValueType const& type)
    {
        return (used + type.alignment - 1) / type.alignment * type.alignment;
    }

    CallShape const& shape_;
    void* places_[CallShape::mostArguments + 1] = {};
    std::unique_ptr<std::byte[]> large_;
    alignas(std::max_align_t) std::byte room_[1024];
};

} // namespace

void road::serve(CallShape const& shape, Implementation implementation, TreflectServerObject const& object,
                 unsigned long classId, unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    Values values(shape);
    shape.readIn(request, values.arguments());
    if (request.available() != 0) {
        request.fail();
    }
    if (request.hasUnmarshallingFailed()) {
        return;
    }
    implementation.run(implementation.context, values.result(), values.arguments());
    if (shape.result != nullptr) {
        shape.result->write(reply, values.result());
    }
    shape.writeOut(reply, values.arguments());
    if (object.isObserved(classId, opIndex)) {
        TipprmiSequence<TipprmiAny> parameters;
        if (shape.result != nullptr) {
            appendParam(parameters, *shape.result, values.result());
        }
        shape.appendAll(parameters, values.arguments());
        object.notifyObservers(classId, opIndex, parameters);
    }
}

bool road::serveFrom(std::span<DispatchRow const> table, TreflectServerObject& object, unsigned long classId,
                     unsigned long opIndex, TipprmiStream& request, TipprmiStream& reply)
{
    auto const row = std::ranges::lower_bound(table, opIndex, {}, &DispatchRow::index);
    if (row == table.end() || row->index != opIndex) {
        return false;
    }
    struct Bound {
        Invoke invoke;
        TreflectServerObject& object;
    } bound{row->invoke, object};
    Implementation const implementation{[](void* context, void* result, void** places) {
                                            Bound const& self = *static_cast<Bound*>(context);
                                            self.invoke(self.object, result, places);
                                        },
                                        &bound};
    serve(*row->shape, implementation, object, classId, opIndex, request, reply);
    return true;
}
