// A value that one operation reads and another one sets.
#pragma once

#include "rmi/ResponseInfo.h"
#include "rmi/Servant.h"

namespace trs::sim {

// Serves `Get` and `Set`, which report a status, from `value`, which outlives the servant.
template <auto Get, auto Set, class T>
void serveSetting(Servant& servant, T& value)
{
    servant
        .on<Get>([&value](T& read) {
            read = value;
            return GetClient::OK;
        })
        .template on<Set>([&value](T const& written) {
            value = written;
            return SetClient::OK;
        });
}

} // namespace trs::sim
