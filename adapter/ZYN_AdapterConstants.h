// The rest of the vocabulary of site management (see ZYN_MessageNames.h): documents, HTTP, sessions, peers and files.
#pragma once

#include <string>

namespace xoh {

// Configuration files.
std::string const RUEM_CONFIG_FILE = "/usr/local/etc/xohRuemConfig.conf";
std::string const SERVICE_REGISTRY_FILE = "/usr/local/etc/xohServiceReg.conf";
std::string const BTSOM_IP_ADDRESS_FILE = "/usr/local/etc/config/btsomIpAddr.conf";
std::string const BTSOM_PORT_FILE = "/usr/local/etc/config/btsomPort.conf";

std::string const XML_DECLARATION = "<?xml version=\"1.0\"?>";

// Elements of a message document.
std::string const ELEMENT_BTS_MESSAGE = "BTSMessage";
std::string const ELEMENT_HEADER = "BTSMessageHdr";
std::string const ELEMENT_TO = "_to";
std::string const ELEMENT_SEQ_NUMBER = "_seqNumber";
std::string const ELEMENT_FROM = "_from";
std::string const ELEMENT_BTS_ID = "_btsId";
std::string const ELEMENT_LOGIN_REQUEST = "LoginRequest";
std::string const ELEMENT_USER_NAME = "_userName";
std::string const ELEMENT_PASSWORD = "_password";
std::string const ELEMENT_FAIL_REASON = "_failReason";
std::string const ELEMENT_LOGIN_RESPONSE = "LoginResponse";
std::string const ELEMENT_ACTIVE_CONNECTION = "ActiveConnection";
std::string const ELEMENT_ACTIVE_USER_NAME = "_userName"; // of an active connection
std::string const ELEMENT_IP_ADDRESS = "_ipaddress";
std::string const ELEMENT_DISCONNECT_REPLY = "DisconnectReply";
std::string const ELEMENT_SW_UPDATE_REQUEST = "SWUpdateRequest";
std::string const ELEMENT_SW_UP_TO_DATE = "SWUpToDate";

// Paths of elements, as ZYN_XmlParser forms them.
std::string const PATH_SEQ_NUMBER = "/BTSMessage/BTSMessageHdr/_seqNumber";
std::string const PATH_BTS_ID = "/BTSMessage/BTSMessageHdr/_btsId";
std::string const PATH_TO = "/BTSMessage/BTSMessageHdr/_to";
std::string const PATH_FROM = "/BTSMessage/BTSMessageHdr/_from";
std::string const PATH_XOH_OPERATION = "/BTSMessage/XOHOperation";
std::string const PATH_ERROR_TAG = "/BTSMessage/XOHOperation/ErrorTag";
std::string const PATH_LOGIN_USER_NAME = "/BTSMessage/LoginRequest/_userName";
std::string const PATH_LOGIN_PASSWORD = "/BTSMessage/LoginRequest/_password";
std::string const PATH_AUTHENTICATE = "/BTSMessage/LoginResponse/_authenticate";
std::string const PATH_LOGIN_RESPONSE = "/BTSMessage/LoginResponse";
std::string const PATH_FAIL_REASON = "/BTSMessage/LoginResponse/_failReason";
std::string const PATH_ACTIVE_USER_NAME = "/BTSMessage/LoginResponse/ActiveConnection/_userName";
std::string const PATH_ACTIVE_IP_ADDRESS = "/BTSMessage/LoginResponse/ActiveConnection/_ipaddress";
std::string const PATH_TRANSFER_PROTOCOL = "/BTSMessage/FileTransferProtocolResponse/_transferProtocol";
std::string const PATH_XML_PAYLOAD = "BTSMessage/XMLPayload"; // indeed without a leading slash

// What a session is known by.
std::string const SESSION_USER_NAME = "ZYN_SESSION_USERNAME";
std::string const SESSION_IP_ADDRESS = "ZYN_SESSION_IPADDRESS";
std::string const SESSION_ID = "ZYN_SESSION_ID";

// The parties of the exchange.
std::string const PARTY_UNIT = "KEP";
std::string const PARTY_SITE_MANAGER = "DOV";
std::string const PARTY_BTS_TRS = "BTS-TRS";

// Two numbers, whose meaning is their users'.
std::string const FIRST_ONE = "1";
std::string const SECOND_ONE = "1";

std::string const HTTP_VERSION = "http/1.1";
std::string const HTTP_VERSION_COPY = HTTP_VERSION; // NOLINT(performance-unnecessary-copy-initialization)

// Results of an operation.
std::string const RESULT_FAILED = "failed";
std::string const RESULT_SUCCESS = "success";
std::string const RESULT_EXECUTION_ERROR = "executionError";
std::string const RESULT_INVALID_LOGIN = "invalidLogin";
std::string const RESULT_ACTIVE_CONNECTION = "activeConnection";

// HTTP methods and headers.
std::string const HTTP_GET = "get";
std::string const HTTP_POST = "post";
std::string const HTTP_OPERATION = "operation";
std::string const HTTP_URL = "url";
std::string const HTTP_VERSION_WORD = "version";
std::string const HTTP_CONTENT_LENGTH = "Content-Length";
std::string const HTTP_DATE = "date";
std::string const HTTP_MAJOR_VERSION = "major-version";
std::string const HTTP_MINOR_VERSION = "minor-version";
std::string const HTTP_RANGE = "range";
std::string const HTTP_STATUS_CODE = "status-code";
std::string const HTTP_REASON_PHRASE = "reason-phrase";
std::string const HTTP_MESSAGE_TYPE = "msg-type";

std::string const STATUS_LINE_OK = "HTTP/1.1 200 OK";
std::string const STATUS_LINE_FORBIDDEN = "HTTP/1.1 403 Forbidden";
std::string const STATUS_LINE_UNAUTHORIZED = "HTTP/1.1 401 Unauthorized";

std::string const STATUS_UNAUTHORIZED = "401";
std::string const STATUS_FORBIDDEN = "403";
std::string const STATUS_OK = "200";

std::string const DOCUMENT_END = "</BTSMessage>";

std::string const HEADER_END_LF = "\n\n";
std::string const HEADER_END_CRLF = "\r\n\r\n";

std::string const LINE_END_LF = "\n";
std::string const LINE_END_CRLF = "\r\n";
std::string const LINE_END_CRLF_COPY = LINE_END_CRLF; // NOLINT(performance-unnecessary-copy-initialization)

// The BTS O&M peer and other addresses that hold unless configured.
std::string const DEFAULT_BTSOM_URL = "HTTP://192.168.255.16:12000/";
std::string const DEFAULT_BTSOM_ADDRESS = "192.168.255.16";
std::string const DEFAULT_BTSOM_ADDRESS_PRODUCT_2 = "192.168.255.120"; // for product type 2
std::string const DEFAULT_ADDRESS = "192.168.254.1";

std::string const NETWORK_ELEMENT_RNC = "RNC";

// The servers that the site configuration names.
std::string const SERVER_REGISTRATION = "ZAV3_REGISTRATION_SERVER";
std::string const SERVER_NTP = "NTP_SERVER";
std::string const SERVER_LDAP = "LDAP_SERVER";
std::string const SERVER_RULE_SET_BTS = "RULE_SET_BTS";
std::string const SERVER_RULE_SET_TRS = "RULE_SET_TRS";
std::string const SERVER_RULE_SET_LMP = "RULE_SET_LMP";

} // namespace xoh
