#include "rmi/CallShape.h"

void CallShape::writeIn(TipprmiStream& request, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        if (arguments[i].isIn) {
            arguments[i].type->write(request, places[i]);
        }
    }
}

void CallShape::readIn(TipprmiStream& request, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        if (arguments[i].isIn) {
            arguments[i].type->read(request, places[i]);
        }
    }
}

void CallShape::writeOut(TipprmiStream& reply, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!arguments[i].isIn) {
            arguments[i].type->write(reply, places[i]);
        }
    }
}

void CallShape::readOut(TipprmiStream& reply, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        if (!arguments[i].isIn) {
            arguments[i].type->read(reply, places[i]);
        }
    }
}

void CallShape::writeAll(TipprmiStream& stream, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        arguments[i].type->write(stream, places[i]);
    }
}

void CallShape::appendAll(TipprmiSequence<TipprmiAny>& list, Places places) const
{
    for (std::size_t i = 0; i < count; ++i) {
        appendParam(list, *arguments[i].type, places[i]);
    }
}

void appendParam(TipprmiSequence<TipprmiAny>& list, ValueType const& type, void const* value)
{
    TipprmiAny any;
    type.write(any, value);
    list.push_back(any);
}
