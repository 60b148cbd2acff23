// The words of the exchange, where one could easily be another.
#include "adapter/ZYN_AdapterConstants.h"
#include "adapter/ZYN_MessageNames.h"
#include "adapter/ZYN_ParserWords.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <set>

namespace {

TEST(Vocabulary, has33OperationsByPosition)
{
    ASSERT_EQ(std::size(xoh::OPERATION_NAMES), 33U);
    EXPECT_STREQ(xoh::OPERATION_NAMES[0], "ackNack");
    EXPECT_STREQ(xoh::OPERATION_NAMES[20], "setRuimParameters");
    EXPECT_STREQ(xoh::OPERATION_NAMES[32], "autoConnectionEstablishedReply");
    std::set<std::string> const different(std::begin(xoh::OPERATION_NAMES), std::end(xoh::OPERATION_NAMES));
    EXPECT_EQ(different.size(), 33U);
    for (std::string const& name : different) {
        EXPECT_TRUE(std::islower(name.front()) && std::all_of(name.begin(), name.end(), ::isalpha)) << name;
    }
}

TEST(Vocabulary, isExactInCaseBlanksAndSlashes)
{
    EXPECT_EQ(xoh::STATUS_LINE_OK, "HTTP/1.1 200 OK");
    EXPECT_EQ(xoh::HTTP_VERSION, "http/1.1");
    EXPECT_EQ(xoh::HTTP_CONTENT_LENGTH, "Content-Length");
    EXPECT_EQ(xoh::PATH_XML_PAYLOAD, "BTSMessage/XMLPayload");
    EXPECT_EQ(xoh::KIND_UNKNOWN, "unknownMessage");
    EXPECT_EQ(xoh::XML_DECLARATION, R"(<?xml version="1.0"?>)");
    EXPECT_EQ(xoh::DEFAULT_BTSOM_URL, "HTTP://" + xoh::DEFAULT_BTSOM_ADDRESS + ":12000/");
    EXPECT_EQ(xoh::HEADER_END_CRLF, std::string("\x0d\x0a\x0d\x0a"));
}

TEST(Vocabulary, hasDistinctConstantsOfEqualValue)
{
    std::pair<std::string const&, std::string const&> const pairs[] = {
        {xoh::ELEMENT_USER_NAME, xoh::ELEMENT_ACTIVE_USER_NAME},
        {xoh::FIRST_ONE, xoh::SECOND_ONE},
        {xoh::HTTP_VERSION, xoh::HTTP_VERSION_COPY},
        {xoh::LINE_END_CRLF, xoh::LINE_END_CRLF_COPY}};
    for (auto const& [first, second] : pairs) {
        EXPECT_EQ(first, second);
        EXPECT_NE(&first, &second);
    }
}

TEST(Vocabulary, hasPathsMadeOfItsElements)
{
    std::string const root(xoh::ROOT_PATH);
    std::string const header = root + xoh::PATH_SEPARATOR + std::string(xoh::HEADER_ELEMENT) + xoh::PATH_SEPARATOR;
    EXPECT_EQ(root, xoh::PATH_SEPARATOR + xoh::ELEMENT_BTS_MESSAGE);
    EXPECT_EQ(xoh::PATH_SEQ_NUMBER, header + xoh::ELEMENT_SEQ_NUMBER);
    EXPECT_EQ(xoh::PATH_BTS_ID, header + xoh::ELEMENT_BTS_ID);
    EXPECT_EQ(xoh::PATH_TO, header + xoh::ELEMENT_TO);
    EXPECT_EQ(xoh::PATH_FROM, header + xoh::ELEMENT_FROM);
    EXPECT_EQ(xoh::PATH_LOGIN_PASSWORD, root + "/" + xoh::ELEMENT_LOGIN_REQUEST + "/" + xoh::ELEMENT_PASSWORD);
    EXPECT_EQ(xoh::PATH_ACTIVE_IP_ADDRESS, root + "/" + xoh::ELEMENT_LOGIN_RESPONSE + "/" +
                                               xoh::ELEMENT_ACTIVE_CONNECTION + "/" + xoh::ELEMENT_IP_ADDRESS);
    EXPECT_EQ(xoh::DOCUMENT_END, "</" + xoh::ELEMENT_BTS_MESSAGE + ">");
}

} // namespace
