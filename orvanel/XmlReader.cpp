// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/XmlReader.h"

#include <algorithm>
#include <map>

#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {

namespace {

std::string Quoted(std::string_view text) {
    return "\"" + support::Excerpt(text) + "\"";
}

std::string Listed(std::initializer_list<std::string_view> names) {
    std::string list;
    for (const auto name : names)
        list += (list.empty() ? "" : ", ") + std::string(name);
    return list.empty() ? "none" : list;
}

bool Holds(std::initializer_list<std::string_view> names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

XmlReader::XmlReader(std::string path, XmlFormat format, const support::Disk& disk)
    : path_(std::move(path)), format_(std::move(format)) {
    try {
        text_ = support::ReadWholeFile(path_, fileSizeLimit, disk);
    } catch (const support::FileError& error) {
        throw ports::HostError(format_.unreadableNumber, error.what());
    }
    const std::string foreign = "this is not " + format_.what + " of this host, ";
    if (!support::IsPlainText(text_))
        throw ports::HostError(format_.damagedNumber, path_ + ": " + foreign + "which is an XML text in UTF-8");
    // As a fragment, since the library otherwise passes over what stands outside the root element.
    constexpr unsigned int options = pugi::parse_default | pugi::parse_fragment | pugi::parse_declaration |
                                     pugi::parse_doctype | pugi::parse_trim_pcdata;
    const auto result = document_.load_buffer(text_.data(), text_.size(), options, pugi::encoding_utf8);
    if (!result) {
        std::string reason = result.description();
        if (!reason.empty() && reason.back() == '.') reason.pop_back();
        FailAt(result.offset, "the file is damaged or cut off (" + reason + "), take an intact copy of it");
    }
    std::size_t elements = 0;
    for (const auto& child : document_.children())
        if (child.type() == pugi::node_element) ++elements;
    if (elements != 1 || Root().name() != format_.rootElement)
        Fail(Root(), foreign + "whose only root element is " + format_.rootElement);
    CheckSurroundings();
    if (const int version = Whole(Root(), "version", 1, 999999); version != format_.version)
        Fail(Root(), "version " + std::to_string(version) + " of this format is not known, only version " +
                         std::to_string(format_.version) + " is");
    if (Text(Root(), "instrument") != "simulated")
        Fail(Root(), "it was not made for a simulated instrument (instrument=\"simulated\")");
}

void XmlReader::CheckSurroundings() const {
    for (const auto& child : document_.children()) {
        if (child.type() == pugi::node_element) continue;
        if (child.type() != pugi::node_declaration || child != document_.first_child())
            Fail(child, "outside element " + format_.rootElement +
                            " may stand comments and, before all, an XML declaration only, remove what else is there");
        const pugi::xml_attribute encoding = child.attribute("encoding");
        if (encoding && !support::EqualIgnoringCase(encoding.value(), "utf-8"))
            Fail(child, "the declared encoding is " + Quoted(encoding.value()) + ", expected is \"utf-8\"");
    }
}

void XmlReader::FailAt(std::ptrdiff_t offset, const std::string& text) const {
    std::string place;
    if (offset >= 0) {
        const auto end = text_.begin() + std::min<std::ptrdiff_t>(offset, std::ssize(text_));
        place = ", line " + std::to_string(1 + std::count(text_.begin(), end, '\n'));
    }
    throw ports::HostError(format_.damagedNumber, path_ + place + ": " + text);
}

void XmlReader::Fail(pugi::xml_node at, const std::string& text) const {
    FailAt(at.offset_debug(), text);
}

void XmlReader::CheckAttributes(pugi::xml_node element, std::initializer_list<std::string_view> required,
                                std::initializer_list<std::string_view> optional) const {
    std::map<std::string, int> seen;
    for (const auto& attribute : element.attributes()) {
        const std::string name = attribute.name();
        if (!Holds(required, name) && !Holds(optional, name))
            Fail(element, "element " + std::string(element.name()) + " has an unknown attribute " + Quoted(name) +
                              ", it may have: " + Listed(required) + (optional.size() ? ", " + Listed(optional) : ""));
        if (++seen[name] > 1)
            Fail(element, "element " + std::string(element.name()) + " has attribute " + Quoted(name) + " twice");
    }
    for (const auto name : required)
        if (!seen.contains(std::string(name)))
            Fail(element, "element " + std::string(element.name()) + " lacks attribute " + Quoted(name));
}

void XmlReader::CheckChildren(pugi::xml_node element, std::initializer_list<std::string_view> names,
                              std::size_t limit) const {
    std::map<std::string, std::size_t> seen;
    for (const auto& child : element.children()) {
        if (child.type() != pugi::node_element)
            Fail(element, "element " + std::string(element.name()) + " holds a text, it may hold elements only");
        if (!Holds(names, child.name()))
            Fail(child, "element " + std::string(element.name()) + " holds an unknown element " + Quoted(child.name()) +
                            ", it may hold: " + Listed(names));
        if (++seen[child.name()] > limit)
            Fail(child, "element " + std::string(element.name()) + " holds more than " + std::to_string(limit) +
                            " elements " + Quoted(child.name()));
    }
}

std::string XmlReader::Text(pugi::xml_node element, const char* attribute, std::size_t lengthLimit) const {
    const pugi::xml_attribute found = element.attribute(attribute);
    if (!found) Fail(element, "element " + std::string(element.name()) + " lacks attribute " + Quoted(attribute));
    std::string text = found.value();
    if (text.size() > lengthLimit)
        Fail(element, "attribute " + Quoted(attribute) + " has " + std::to_string(text.size()) +
                          " bytes, more than the " + std::to_string(lengthLimit) + " allowed");
    if (!support::IsPlainText(text)) Fail(element, "attribute " + Quoted(attribute) + " holds a control character");
    return text;
}

double XmlReader::Number(pugi::xml_node element, const char* attribute) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseDouble(text);
    if (!value) Fail(element, "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a number");
    return *value;
}

float XmlReader::Single(pugi::xml_node element, const char* attribute) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseSingle(text);
    if (!value)
        Fail(element,
             "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a number of single precision");
    return *value;
}

int XmlReader::Whole(pugi::xml_node element, const char* attribute, int minimum, int maximum) const {
    const std::string text = Text(element, attribute);
    const auto value = support::ParseInt32(text);
    if (!value || *value < minimum || *value > maximum || std::to_string(*value) != text)
        Fail(element, "attribute " + Quoted(attribute) + " is " + Quoted(text) + ", expected is a whole number from " +
                          std::to_string(minimum) + " to " + std::to_string(maximum));
    return *value;
}

}  // namespace orvanel
