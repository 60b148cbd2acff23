#include "rmi/MetaObject.h"

#include <string>

DescribedMetaObject::DescribedMetaObject(MetaDescription const& description)
    : TreflectMetaObject(std::string(description.className), description.classId), description_(description)
{
}

void DescribedMetaObject::completeMetaInformation()
{
    Completion const completion(*this);
    if (!completion.isFirst()) {
        return;
    }
    if (description_.parent != nullptr) {
        registerParent(description_.parent());
    }
    completeMetaInformationHelper(description_.operations.data(), description_.operations.size(), nullptr, 0);
}

TreflectMetaObject* DescribedMetaObject::completed()
{
    completeMetaInformation();
    return this;
}
