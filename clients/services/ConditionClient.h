// ConditionClient: one fault indication of a managed object, handed out by operations such as
// IfNetClient::getDownEgress() or EthLinkClient::getLOC().
#pragma once

#include "clients/services/FaultServiceClient.h"
#include "platform/TreflectObject.h"
#include "rmi/MetaObject.h"
#include "rmi/ResponseInfo.h"

// A condition has a current and a default severity, a priority, a reporting flag, and is active or not and suppressed
// or not. The server decides what the severities' numbers mean.
class ConditionClient : public TreflectObject {
public:
    using Parent = TreflectObject;
    using TreflectObject::TreflectObject;
    ConditionClient() = default;
    explicit ConditionClient(TreflectObject const& other) : TreflectObject(other) {}

    using ClientSpecificMetaObject = ProxyMetaObject<ConditionClient>;
    static ClientSpecificMetaObject oMeta;
    static TreflectMetaObject* staticMeta();

    // A priority as getPriority() and setPriority() use it.
    static constexpr int STANDARD_PRIORITY = 10;

    // Reads the severity that the condition has now; 0 when the call fails.
    virtual long getCurrentSeverity() const;
    // Reads the severity that resetCurrentSeverity() restores; 0 when the call fails.
    virtual long getDefaultSeverity() const;
    // Reads the priority; 0 when the call fails.
    virtual long getPriority() const;
    // Reads whether the condition is to be reported to the outside; false when the call fails.
    virtual bool getReportToExtern() const;
    // Reads whether the condition, when active, disables the operational state; false when the call fails.
    virtual bool disablesOperState() const;
    // Reads whether the condition is active; false when the call fails.
    virtual bool isActive() const;
    // Reads whether the condition is suppressed; false when the call fails.
    virtual bool isSuppressed() const;
    // Reads whether the condition has been reported to the outside; false when the call fails.
    virtual bool isReportedToExtern() const;
    // Makes the condition a member of a fault service's group.
    virtual ResponseInfo<RunClient> addToGroup(FaultServiceClient const& group) const;
    // Takes the condition out of its group.
    virtual ResponseInfo<RunClient> removeFromGroup() const;
    // Makes the condition active without telling its group.
    virtual ResponseInfo<RunClient> activateWithoutGroup() const;
    // Makes the condition inactive without telling its group.
    virtual ResponseInfo<RunClient> deactivateWithoutGroup() const;
    // Makes the condition active.
    virtual ResponseInfo<RunClient> raise() const;
    // Makes the condition inactive.
    virtual ResponseInfo<RunClient> cancel() const;
    // Sets the severity that the condition has now.
    virtual void setCurrentSeverity(long const& severity) const;
    // Sets the severity that resetCurrentSeverity() restores.
    virtual void setDefaultSeverity(long const& severity) const;
    // Gives the condition its default severity.
    virtual void resetCurrentSeverity() const;
    // Sets whether the condition is to be reported to the outside.
    virtual void setReportToExtern(bool const& report) const;
    // Sets the priority.
    virtual void setPriority(long const& priority) const;
    // Keeps the condition from taking effect while it is active.
    virtual ResponseInfo<RunClient> suppress() const;
    // Ends a suppression.
    virtual ResponseInfo<RunClient> unsuppress() const;
};
