// The CIM-XML request reader: what each call becomes, and what every kind
// of bad document is answered with.
#include <string>

#include <gtest/gtest.h>

#include "CimXmlRequest.h"

namespace {

const char kNamespace[] =
    "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";

std::string Message(const std::string& call, const std::string& request = "SIMPLEREQ") {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
           "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><" + request + ">" + call + "</" + request +
           "></MESSAGE></CIM>";
}

std::string Intrinsic(const std::string& name, const std::string& parameters) {
    return Message("<IMETHODCALL NAME=\"" + name + "\">" + kNamespace + parameters + "</IMETHODCALL>");
}

std::string Parameter(const std::string& name, const std::string& content) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}

std::string Key(const std::string& name, const std::string& value, const char* type = "string") {
    return "<KEYBINDING NAME=\"" + name + "\"><KEYVALUE VALUETYPE=\"" + type + "\">" + value + "</KEYVALUE></KEYBINDING>";
}

TCimCall Parse(const std::string& text, const TCallLimits& limits = TCallLimits()) {
    return ParseCimCall(text.data(), text.size(), limits);
}

TEST(RequestReader, ReadsEnumerateInstancesWithEveryParameter) {
    const TCimCall call = Parse(Intrinsic(
        "EnumerateInstances",
        Parameter("ClassName", "<CLASSNAME NAME=\"ZENTA_Cat\"/>") + Parameter("DeepInheritance", "<VALUE>false</VALUE>") +
            Parameter("LocalOnly", "<VALUE>FALSE</VALUE>") + Parameter("IncludeQualifiers", "<VALUE>TRUE</VALUE>") +
            Parameter("IncludeClassOrigin", "<VALUE>TRUE</VALUE>") +
            Parameter("PropertyList", "<VALUE.ARRAY><VALUE>Name</VALUE><VALUE>Legs</VALUE></VALUE.ARRAY>")));
    ASSERT_EQ(call.outcome, TCimCall::kCall) << call.description;
    EXPECT_EQ(call.messageId, "4711");
    EXPECT_EQ(call.methodName, "EnumerateInstances");
    EXPECT_TRUE(call.intrinsic);
    const TRequest& request = call.request;
    EXPECT_EQ(request.verb, EVerb::kEnumerateInstances);
    EXPECT_EQ(request.format, EFormat::kCimXml);
    EXPECT_EQ(request.nameSpace, "root/cimv2");
    EXPECT_EQ(request.className, "ZENTA_Cat");
    EXPECT_FALSE(request.deep);
    EXPECT_FALSE(request.localOnly);
    EXPECT_TRUE(request.includeQualifiers);
    EXPECT_TRUE(request.includeClassOrigin);
    EXPECT_TRUE(request.hasPropertyList);
    EXPECT_EQ(request.propertyList, (std::vector<std::string>{"Name", "Legs"}));
}

TEST(RequestReader, GivesOmittedParametersTheirStandardDefaults) {
    const TCimCall instances = Parse(Intrinsic("EnumerateInstances", Parameter("ClassName", "<CLASSNAME NAME=\"C\"/>")));
    ASSERT_EQ(instances.outcome, TCimCall::kCall);
    EXPECT_TRUE(instances.request.deep);
    EXPECT_FALSE(instances.request.hasPropertyList);
    EXPECT_FALSE(instances.request.includeQualifiers);

    const TCimCall classes = Parse(Intrinsic("EnumerateClassNames", ""));
    ASSERT_EQ(classes.outcome, TCimCall::kCall);
    EXPECT_FALSE(classes.request.deep);
    EXPECT_TRUE(classes.request.className.empty());

    const TCimCall cls = Parse(Intrinsic("GetClass", Parameter("ClassName", "<CLASSNAME NAME=\"C\"/>")));
    ASSERT_EQ(cls.outcome, TCimCall::kCall);
    EXPECT_TRUE(cls.request.localOnly);
    EXPECT_TRUE(cls.request.includeQualifiers);

    // An empty PropertyList parameter is a null list: every property.
    const TCimCall nullList = Parse(Intrinsic(
        "GetInstance", Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"C\">" + Key("K", "v") + "</INSTANCENAME>") +
                           Parameter("PropertyList", "")));
    ASSERT_EQ(nullList.outcome, TCimCall::kCall);
    EXPECT_FALSE(nullList.request.hasPropertyList);
}

TEST(RequestReader, WritesInstanceNamesAsPathTextThatKeepsEveryCharacter) {
    const std::string name = "<INSTANCENAME CLASSNAME=\"ZENTA_OSProcess\">"
                             "<KEYBINDING NAME=\"GroupComponent\"><VALUE.REFERENCE><LOCALINSTANCEPATH>" +
                             std::string(kNamespace) +
                             "<INSTANCENAME CLASSNAME=\"ZENTA_OperatingSystem\">" + Key("Name", "vm \"one\" \\ two") +
                             "</INSTANCENAME></LOCALINSTANCEPATH></VALUE.REFERENCE></KEYBINDING>" +
                             Key("PartComponent", "a,b=c") + Key("Count", "7", "numeric") + "</INSTANCENAME>";
    const TCimCall call = Parse(Intrinsic("GetInstance", Parameter("InstanceName", name)));
    ASSERT_EQ(call.outcome, TCimCall::kCall) << call.description;
    EXPECT_EQ(call.request.path,
              "ZENTA_OSProcess.GroupComponent=\"root/cimv2:ZENTA_OperatingSystem.Name=\\\"vm \\\\\\\"one\\\\\\\" "
              "\\\\\\\\ two\\\"\",PartComponent=\"a,b=c\",Count=\"7\"");
}

TEST(RequestReader, ReadsWalksAndTheirFilters) {
    const std::string object =
        Parameter("ObjectName", "<INSTANCENAME CLASSNAME=\"P\">" + Key("Id", "1", "numeric") + "</INSTANCENAME>");
    const TCimCall associators =
        Parse(Intrinsic("Associators", object + Parameter("AssocClass", "<CLASSNAME NAME=\"A\"/>") +
                                           Parameter("ResultClass", "<CLASSNAME NAME=\"R\"/>") +
                                           Parameter("Role", "<VALUE>Part</VALUE>") +
                                           Parameter("ResultRole", "<VALUE>Group</VALUE>")));
    ASSERT_EQ(associators.outcome, TCimCall::kCall) << associators.description;
    EXPECT_EQ(associators.request.verb, EVerb::kAssociators);
    EXPECT_EQ(associators.request.path, "P.Id=\"1\"");
    EXPECT_EQ(associators.request.filter.assocClass, "A");
    EXPECT_EQ(associators.request.filter.resultClass, "R");
    EXPECT_EQ(associators.request.filter.role, "Part");
    EXPECT_EQ(associators.request.filter.resultRole, "Group");

    // References take no AssocClass; a class as ObjectName is not walked.
    EXPECT_EQ(Parse(Intrinsic("References", object + Parameter("AssocClass", "<CLASSNAME NAME=\"A\"/>"))).status,
              ECimStatus::kInvalidParameter);
    const TCimCall ofClass = Parse(Intrinsic("ReferenceNames", Parameter("ObjectName", "<CLASSNAME NAME=\"P\"/>")));
    EXPECT_EQ(ofClass.outcome, TCimCall::kCimError);
    EXPECT_EQ(ofClass.status, ECimStatus::kNotSupported);
}

TEST(RequestReader, ReadsMethodCallsWithEveryKindOfArgument) {
    const std::string instance = "<INSTANCENAME CLASSNAME=\"P\">" + Key("Id", "1", "numeric") + "</INSTANCENAME>";
    const TCimCall call = Parse(Message(
        "<METHODCALL NAME=\"Run\"><LOCALINSTANCEPATH>" + std::string(kNamespace) + instance +
        "</LOCALINSTANCEPATH><PARAMVALUE NAME=\"Text\"><VALUE> two  spaces </VALUE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"List\"><VALUE.ARRAY><VALUE>a</VALUE><VALUE></VALUE></VALUE.ARRAY></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Target\"><VALUE.REFERENCE>" + instance + "</VALUE.REFERENCE></PARAMVALUE>"
        "<PARAMVALUE NAME=\"Nothing\"/></METHODCALL>"));
    ASSERT_EQ(call.outcome, TCimCall::kCall) << call.description;
    EXPECT_FALSE(call.intrinsic);
    EXPECT_EQ(call.request.verb, EVerb::kInvokeMethod);
    EXPECT_EQ(call.request.methodName, "Run");
    EXPECT_EQ(call.request.nameSpace, "root/cimv2");
    EXPECT_EQ(call.request.path, "P.Id=\"1\"");
    ASSERT_EQ(call.request.arguments.size(), 4u);
    EXPECT_EQ(call.request.arguments[0].text, " two  spaces ");
    EXPECT_TRUE(call.request.arguments[1].isList);
    EXPECT_EQ(call.request.arguments[1].items, (std::vector<std::string>{"a", ""}));
    EXPECT_EQ(call.request.arguments[2].text, "P.Id=\"1\"");
    EXPECT_TRUE(call.request.arguments[3].isNull);

    const TCimCall ofClass = Parse(Message("<METHODCALL NAME=\"Count\"><LOCALCLASSPATH>" + std::string(kNamespace) +
                                           "<CLASSNAME NAME=\"ZENTA_Dog\"/></LOCALCLASSPATH></METHODCALL>"));
    ASSERT_EQ(ofClass.outcome, TCimCall::kCall) << ofClass.description;
    EXPECT_EQ(ofClass.request.path, "ZENTA_Dog");
}

TEST(RequestReader, AnswersOperationsThatChangeThingsAsNotSupported) {
    for (const char* name : {"CreateInstance", "ModifyInstance", "DeleteInstance", "CreateClass", "ExecQuery",
                             "SetProperty", "OpenEnumerateInstances", "NoSuchOperation"}) {
        const TCimCall call = Parse(Intrinsic(name, Parameter("NewInstance", "<INSTANCE CLASSNAME=\"C\"/>")));
        EXPECT_EQ(call.outcome, TCimCall::kCimError) << name;
        EXPECT_EQ(call.status, ECimStatus::kNotSupported) << name;
        EXPECT_EQ(call.methodName, name);
    }
}

TEST(RequestReader, RefusesParametersItDoesNotKnowOrCannotRead) {
    const std::string cls = Parameter("ClassName", "<CLASSNAME NAME=\"C\"/>");
    const struct {
        std::string document;
        const char* why;
    } cases[] = {
        {Intrinsic("EnumerateInstances", cls + Parameter("Colour", "<VALUE>red</VALUE>")), "unknown parameter"},
        {Intrinsic("EnumerateInstances", cls + Parameter("DeepInheritance", "<VALUE>yes</VALUE>")), "no boolean"},
        {Intrinsic("EnumerateInstances", cls + Parameter("DeepInheritance", "")), "boolean without value"},
        {Intrinsic("EnumerateInstances", ""), "ClassName missing"},
        {Intrinsic("GetInstance", cls), "InstanceName missing"},
        {Intrinsic("GetQualifier", ""), "QualifierName missing"},
        // Names reach object path text: anything but a CIM name is refused.
        {Intrinsic("EnumerateInstances", Parameter("ClassName", "<CLASSNAME NAME=\"C.K=&quot;x&quot;\"/>")),
         "class name that is path text"},
        {Intrinsic("GetInstance", Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"C\">" +
                                                                Key("K=1,J", "v") + "</INSTANCENAME>")),
         "key name that is path text"},
        {Intrinsic("GetInstance", Parameter("InstanceName", "<INSTANCENAME CLASSNAME=\"1C\"/>")), "leading digit"},
    };
    for (const auto& entry : cases) {
        const TCimCall call = Parse(entry.document);
        EXPECT_EQ(call.outcome, TCimCall::kCimError) << entry.why;
        EXPECT_EQ(call.status, ECimStatus::kInvalidParameter) << entry.why;
        EXPECT_FALSE(call.description.empty()) << entry.why;
    }
}

TEST(RequestReader, AnswersDocumentsItCannotUseWithTheHttpErrorsClientsExpect) {
    const std::string good = Intrinsic("EnumerateQualifiers", "");
    const struct {
        std::string document;
        int status;
        const char* cimError;
    } cases[] = {
        {"", 400, "request-not-well-formed"},
        {"<CIM><MESSAGE", 400, "request-not-well-formed"},
        {good.substr(0, good.size() - 3), 400, "request-not-well-formed"},
        {"<NOTCIM/>", 400, "request-not-valid"},
        {"<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE PROTOCOLVERSION=\"1.0\"><SIMPLEREQ/></MESSAGE></CIM>",
         400, "request-not-valid"},
        {Message("<EXPMETHODCALL NAME=\"X\"/>"), 400, "request-not-valid"},
        {Message("<IMETHODCALL NAME=\"EnumerateQualifiers\"/>"), 400, "request-not-valid"},
        {Message("<IMETHODCALL NAME=\"EnumerateQualifiers\">" + std::string(kNamespace) + "</IMETHODCALL>",
                 "MULTIREQ"),
         501, "multiple-requests-unsupported"},
        {std::string(good).replace(good.find("CIMVERSION=\"2.0\""), 16, "CIMVERSION=\"3.0\""), 501,
         "unsupported-cim-version"},
        {std::string(good).replace(good.find("PROTOCOLVERSION=\"1.0\""), 21, "PROTOCOLVERSION=\"9\""), 501,
         "unsupported-protocol-version"},
    };
    for (const auto& entry : cases) {
        const TCimCall call = Parse(entry.document);
        EXPECT_EQ(call.outcome, TCimCall::kHttpError) << entry.document;
        EXPECT_EQ(call.httpStatus, entry.status) << entry.document;
        EXPECT_EQ(call.cimError, entry.cimError) << entry.document;
        EXPECT_FALSE(call.description.empty());
    }
}

TEST(RequestReader, RefusesDocumentsBeyondItsLimitsWithoutRecursingIntoThem) {
    // Far deeper than any stack would take if the reader recursed.
    std::string deep = Intrinsic("EnumerateQualifiers", "");
    const std::size_t at = deep.find("</IMETHODCALL>");
    std::string nested;
    for (int i = 0; i < 200000; ++i) nested += "<a>";
    for (int i = 0; i < 200000; ++i) nested += "</a>";
    deep.insert(at, nested);
    const TCimCall tooDeep = Parse(deep);
    EXPECT_EQ(tooDeep.outcome, TCimCall::kHttpError);
    EXPECT_NE(tooDeep.description.find("deeper"), std::string::npos) << tooDeep.description;

    TCallLimits few;
    few.maxElements = 5;
    const TCimCall tooMany = Parse(Intrinsic("EnumerateQualifiers", ""), few);
    EXPECT_EQ(tooMany.outcome, TCimCall::kHttpError);
    EXPECT_EQ(tooMany.httpStatus, 413);

    // Within the limits, the same shape is read.
    EXPECT_EQ(Parse(Intrinsic("EnumerateQualifiers", "")).outcome, TCimCall::kCall);
}

TEST(RequestReader, DoesNotExpandEntitiesADocumentTypeDeclares) {
    const std::string bomb =
        "<?xml version=\"1.0\"?><!DOCTYPE CIM [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">]>"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>"
        "<IMETHODCALL NAME=\"GetQualifier\">" + std::string(kNamespace) +
        "<IPARAMVALUE NAME=\"QualifierName\"><VALUE>&b;</VALUE></IPARAMVALUE></IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>";
    const TCimCall call = Parse(bomb);
    if (call.outcome == TCimCall::kCall) {
        EXPECT_EQ(call.request.qualifierName.find("aaaa"), std::string::npos);
    } else {
        EXPECT_FALSE(call.description.empty());
    }
}

}  // namespace
