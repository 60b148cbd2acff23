#include "tools/trsadapter/MessageHandler.h"

#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_MessageNames.h"
#include "adapter/ZYN_ParserWords.h"
#include "adapter/ZYN_XmlParser.h"
#include "broker/PrintableText.h"
#include "platform/NmaLogHelper.h"

#include <algorithm>
#include <fmt/format.h>
#include <iterator>
#include <sstream>

namespace trs::adapter {

namespace {

// The operations that the adapter carries out, by their index.
char const* const acknowledgement = xoh::OPERATION_NAMES[0];
char const* const supervision = xoh::OPERATION_NAMES[12];

std::string pathOf(std::string const& messageElement)
{
    return std::string(xoh::ROOT_PATH) + xoh::PATH_SEPARATOR + messageElement;
}

std::string pathIn(std::string const& messageElement, std::string const& element)
{
    return pathOf(messageElement) + xoh::PATH_SEPARATOR + element;
}

bool isOperation(std::string const& name)
{
    return std::find(std::begin(xoh::OPERATION_NAMES), std::end(xoh::OPERATION_NAMES), name) !=
           std::end(xoh::OPERATION_NAMES);
}

// Why the document is no message; empty when it is one.
std::string whatIsWrong(ZYN_XmlParser const& message)
{
    if (message.XML_GetErrorCode() != XML_ERROR_NONE) {
        return fmt::format("{} at line {}", XML_ErrorString(message.XML_GetErrorCode()),
                           message.XML_GetCurrentLineNumber());
    }
    return message.getXohMsgType().empty() ? "no message in " + std::string(xoh::ROOT_PATH) : std::string();
}

} // namespace

MessageHandler::MessageHandler(Credentials const& credentials, Sessions& sessions, Identity const& identity)
    : logins_(credentials), sessions_(sessions), identity_(identity)
{
}

MessageHandler::Answer MessageHandler::handle(Request const& request)
{
    std::istringstream stream(request.document);
    ZYN_XmlParser const message(stream);
    if (std::string const wrong = whatIsWrong(message); !wrong.empty()) {
        return refuse(message, 400, xoh::KIND_HTTP_BAD_REQUEST, wrong);
    }
    std::string const type = message.getXohMsgType();
    if (type == xoh::ELEMENT_LOGIN_REQUEST) {
        return logIn(message, request);
    }

    auto const [standing, user] = sessions_.check(request.sessionId, request.address);
    if (standing == Sessions::Standing::none) {
        return refuse(message, 401, xoh::KIND_HTTP_UNAUTHORIZED, "no session");
    }
    if (standing == Sessions::Standing::foreign) {
        return refuse(message, 403, xoh::KIND_HTTP_FORBIDDEN, "the session is of another address");
    }
    Answer reply = type == xoh::KIND_DISCONNECT ? logOut(message, request) : carryOut(message);
    reply.user = user;
    return reply;
}

MessageHandler::Answer MessageHandler::logIn(ZYN_XmlParser const& message, Request const& request)
{
    auto const refused = [&](int status, std::string const& reason, std::vector<Field> const& more = {}) {
        std::vector<Field> fields{{xoh::PATH_AUTHENTICATE, xoh::RESULT_FAILED}, {xoh::PATH_FAIL_REASON, reason}};
        fields.insert(fields.end(), more.begin(), more.end());
        return answer(message, status, xoh::KIND_LOGIN_REQUEST, reason, fields);
    };
    std::string const user = message.getValue(xoh::PATH_LOGIN_USER_NAME);
    Logins::Verdict const verdict = logins_.check(user, message.getValue(xoh::PATH_LOGIN_PASSWORD), request.address);
    if (verdict == Logins::Verdict::busy) {
        return refused(503, xoh::RESULT_EXECUTION_ERROR);
    }
    if (verdict == Logins::Verdict::wrong) {
        NmaLogHelper(4, __FILE__, __func__, __LINE__)
            .message("login of '%s' from %s refused", printable(user).c_str(), request.address.c_str());
        return refused(401, xoh::RESULT_INVALID_LOGIN);
    }
    Sessions::Session active;
    std::optional<Sessions::Session> const session = sessions_.begin(user, request.address, request.sessionId, active);
    if (!session) {
        return refused(403, xoh::RESULT_ACTIVE_CONNECTION,
                       {{xoh::PATH_ACTIVE_USER_NAME, active.user}, {xoh::PATH_ACTIVE_IP_ADDRESS, active.address}});
    }
    Answer accepted = answer(message, 200, xoh::KIND_LOGIN_REQUEST, xoh::RESULT_SUCCESS,
                             {{xoh::PATH_AUTHENTICATE, xoh::RESULT_SUCCESS}});
    accepted.user = user;
    accepted.sessionId = session->id;
    return accepted;
}

MessageHandler::Answer MessageHandler::logOut(ZYN_XmlParser const& message, Request const& request)
{
    sessions_.end(request.sessionId);
    Answer reply =
        answer(message, 200, xoh::KIND_DISCONNECT, xoh::RESULT_SUCCESS, {{pathOf(xoh::ELEMENT_DISCONNECT_REPLY), {}}});
    reply.sessionId = std::string();
    return reply;
}

MessageHandler::Answer MessageHandler::carryOut(ZYN_XmlParser const& message) const
{
    std::string const type = message.getXohMsgType();
    if (pathOf(type) != xoh::PATH_XOH_OPERATION) {
        return refuse(message, 400, xoh::KIND_UNKNOWN, printable(type));
    }
    std::string const operation = message.getValue(xoh::PATH_XOH_OPERATION);
    if (!isOperation(operation)) {
        return refuse(message, 400, xoh::KIND_UNKNOWN, printable(operation));
    }
    bool const isSupervision = operation == supervision;
    std::string const& result = isSupervision ? xoh::RESULT_SUCCESS : xoh::RESULT_EXECUTION_ERROR;
    return answer(message, 200, isSupervision ? xoh::KIND_HTTP_SUPERVISION : xoh::KIND_PASS_THROUGH, result,
                  {{xoh::PATH_ERROR_TAG, result}, {xoh::PATH_XOH_OPERATION, acknowledgement}});
}

MessageHandler::Answer MessageHandler::answer(ZYN_XmlParser const& message, int status, std::string const& kind,
                                              std::string const& result, std::vector<Field> const& fields) const
{
    std::string const from = message.getValue(xoh::PATH_FROM);
    std::vector<Field> all{{xoh::PATH_TO, from.empty() ? xoh::PARTY_SITE_MANAGER : from},
                           {xoh::PATH_SEQ_NUMBER, message.getValue(xoh::PATH_SEQ_NUMBER)},
                           {xoh::PATH_FROM, xoh::PARTY_UNIT},
                           {xoh::PATH_BTS_ID, std::to_string(identity_.get().btsId)}};
    all.insert(all.end(), fields.begin(), fields.end());
    return {status, writeDocument(all), kind, result, {}, std::nullopt};
}

// An answer whose message is of the request's kind, which says what is wrong, and contains why.
MessageHandler::Answer MessageHandler::refuse(ZYN_XmlParser const& message, int status, std::string const& kind,
                                              std::string const& reason) const
{
    return answer(message, status, kind, xoh::RESULT_FAILED, {{pathIn(kind, xoh::ELEMENT_FAIL_REASON), reason}});
}

} // namespace trs::adapter
