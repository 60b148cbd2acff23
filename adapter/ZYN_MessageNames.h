// The names of the operations and the kinds of messages that travel between the unit and its site management clients.
#pragma once

#include <string>

// The words of the exchange are XML over HTTP, XOH for short. No source has a literal of its own for one of them. Like
// all constants of this namespace these have internal linkage: each source unit that includes them has its own.
namespace xoh {

// The operations. The position is the index that the adapter knows an operation by; it is never sent.
char const* const OPERATION_NAMES[33] = {
    "ackNack",
    "connectionEstablishedIndication",
    "swUpdateRequestNotification",
    "swUpdateRequest",
    "swUpToDate",
    "fileActivationRequest",
    "swVersionRequest",
    "swVersionReply",
    "hwInformationUpdated",
    "alarmObservation",
    "alarmStatusRequest",
    "resetRequest",
    "supervision",
    "fileLoadRequest",
    "fileLoadPrepare",
    "alarmStatusReply",
    "fileLoadCompleted",
    "fileLoadNotification",
    "userInfoUpdate",
    "fileActivationAck",
    "setRuimParameters",
    "connectionEstablishedReply",
    "configurationChangeNotification",
    "rtOperation",
    "featureStateSet",
    "userInfoUpdateAck",
    "setSecureConnectionMode",
    "executeTest",
    "testAck",
    "targetIdCheck",
    "targetIdCheckResult",
    "autoConnectionEstablishedIndication",
    "autoConnectionEstablishedReply",
};

// The kinds into which messages are sorted, whichever way they go.
std::string const KIND_NULL_MESSAGE = "NullMessage";
std::string const KIND_PASS_THROUGH = "PassThrough";
std::string const KIND_LOGIN_REQUEST = "LoginRequest";
std::string const KIND_LOGIN_RESPONSE = "LoginResponse";
std::string const KIND_DISCONNECT = "Disconnect";
std::string const KIND_DISCONNECT_REPLY = "DisconnectReply";
std::string const KIND_SIGNAL_THROUGH = "SignalThrough";
std::string const KIND_HTTP_UNAUTHORIZED = "HttpUnauthorized";
std::string const KIND_HTTP_FORBIDDEN = "HttpForbidden";
std::string const KIND_TRS_REQUEST = "TRSRequest";
std::string const KIND_RESPONSE = "Response";
std::string const KIND_NOTIFICATION = "Notification";
std::string const KIND_KITE_REQUEST = "KITERequest";
std::string const KIND_HTTP_SUPERVISION = "HttpSupervision";
std::string const KIND_HTTP_DOV_ESTABLISH_CONNECTION = "HttpDovEstablishConnection";
std::string const KIND_ESTABLISH_CONNECTION = "EstablishConnection";
std::string const KIND_ESTABLISH_CONNECTION_RESPONSE = "EstablishConnectionResponse";
std::string const KIND_HTTP_BAD_REQUEST = "HttpBadRequest";
std::string const KIND_UNKNOWN = "unknownMessage";

} // namespace xoh
