// HwmLedClient: the LED of a hardware unit, handed out by HwmUnitClient::getLed().
#pragma once

#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/Operations.h"
#include "rmi/Record.h"
#include "rmi/ResponseInfo.h"

#include <string>

// Out-arguments count only when the status is OK.
class HwmLedClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    HwmLedClient() = default;
    explicit HwmLedClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<HwmLedClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // A colour. The server decides which values there are and what they mean.
    enum LedColour : int {
        LED_COLOUR_0 = 0,
    };
    // What the LED shows. The server decides which colour is shown when and what the flag selects.
    struct LedState {
        LedColour colour1;
        LedColour colour2;
        bool flag;
    };

    // Reads what the LED shows.
    virtual ResponseInfo<GetClient> getLedState(LedState& state) const;
    // Makes the LED show something else.
    virtual ResponseInfo<SetClient> updateLedState(LedState const& state) const;
    // Sets the LED's name.
    virtual ResponseInfo<SetClient> setLedName(std::string const& name) const;
    // Reads the LED's name.
    virtual ResponseInfo<GetClient> getLedName(std::string& name) const;
};

template <>
struct RecordFields<HwmLedClient::LedState>
    : Fields<&HwmLedClient::LedState::colour1, &HwmLedClient::LedState::colour2, &HwmLedClient::LedState::flag> {};

template <>
struct Operations<HwmLedClient>
    : OperationList<HwmLedClient, 0xfba274a4, Operation<0, &HwmLedClient::getLedState>,
                    Operation<1, &HwmLedClient::updateLedState>, Operation<2, &HwmLedClient::setLedName>,
                    Operation<3, &HwmLedClient::getLedName>> {};
