// ConditionSkeleton: the server's side of ConditionClient.
#pragma once

#include "clients/services/ConditionClient.h"
#include "rmi/Dispatch.h"

class ConditionSkeleton;
extern template class TypedSkeleton<ConditionSkeleton, ConditionClient>;

class ConditionSkeleton : public TypedSkeleton<ConditionSkeleton, ConditionClient> {
public:
    using TypedSkeleton::TypedSkeleton;

    virtual long getCurrentSeverity() = 0;
    virtual long getDefaultSeverity() = 0;
    virtual long getPriority() = 0;
    virtual bool getReportToExtern() = 0;
    virtual bool disablesOperState() = 0;
    virtual bool isActive() = 0;
    virtual bool isSuppressed() = 0;
    virtual bool isReportedToExtern() = 0;
    virtual ResponseInfo<RunClient> addToGroup(FaultServiceClient const& group) = 0;
    virtual ResponseInfo<RunClient> removeFromGroup() = 0;
    virtual ResponseInfo<RunClient> activateWithoutGroup() = 0;
    virtual ResponseInfo<RunClient> deactivateWithoutGroup() = 0;
    virtual ResponseInfo<RunClient> raise() = 0;
    virtual ResponseInfo<RunClient> cancel() = 0;
    virtual void setCurrentSeverity(long const& severity) = 0;
    virtual void setDefaultSeverity(long const& severity) = 0;
    virtual void resetCurrentSeverity() = 0;
    virtual void setReportToExtern(bool const& report) = 0;
    virtual void setPriority(long const& priority) = 0;
    virtual ResponseInfo<RunClient> suppress() = 0;
    virtual ResponseInfo<RunClient> unsuppress() = 0;
};

template <>
struct Operations<ConditionClient>
    : OperationList<
          ConditionClient, 0x3f270ae0,
          LocalOperation<0, &ConditionClient::getCurrentSeverity, &ConditionSkeleton::getCurrentSeverity>,
          LocalOperation<1, &ConditionClient::getDefaultSeverity, &ConditionSkeleton::getDefaultSeverity>,
          LocalOperation<2, &ConditionClient::getPriority, &ConditionSkeleton::getPriority>,
          LocalOperation<3, &ConditionClient::getReportToExtern, &ConditionSkeleton::getReportToExtern>,
          LocalOperation<4, &ConditionClient::disablesOperState, &ConditionSkeleton::disablesOperState>,
          LocalOperation<5, &ConditionClient::isActive, &ConditionSkeleton::isActive>,
          LocalOperation<6, &ConditionClient::isSuppressed, &ConditionSkeleton::isSuppressed>,
          LocalOperation<7, &ConditionClient::isReportedToExtern, &ConditionSkeleton::isReportedToExtern>,
          LocalOperation<8, &ConditionClient::addToGroup, &ConditionSkeleton::addToGroup>,
          LocalOperation<9, &ConditionClient::removeFromGroup, &ConditionSkeleton::removeFromGroup>,
          LocalOperation<10, &ConditionClient::activateWithoutGroup, &ConditionSkeleton::activateWithoutGroup>,
          LocalOperation<11, &ConditionClient::deactivateWithoutGroup, &ConditionSkeleton::deactivateWithoutGroup>,
          LocalOperation<12, &ConditionClient::raise, &ConditionSkeleton::raise>,
          LocalOperation<13, &ConditionClient::cancel, &ConditionSkeleton::cancel>,
          LocalOperation<14, &ConditionClient::setCurrentSeverity, &ConditionSkeleton::setCurrentSeverity>,
          LocalOperation<15, &ConditionClient::setDefaultSeverity, &ConditionSkeleton::setDefaultSeverity>,
          LocalOperation<16, &ConditionClient::resetCurrentSeverity, &ConditionSkeleton::resetCurrentSeverity>,
          LocalOperation<17, &ConditionClient::setReportToExtern, &ConditionSkeleton::setReportToExtern>,
          LocalOperation<18, &ConditionClient::setPriority, &ConditionSkeleton::setPriority>,
          LocalOperation<19, &ConditionClient::suppress, &ConditionSkeleton::suppress>,
          LocalOperation<20, &ConditionClient::unsuppress, &ConditionSkeleton::unsuppress>> {};
