// SPDX-FileCopyrightText: 2026 The Veltra developers
// SPDX-License-Identifier: GPL-3.0-or-later

#include "orvanel/XmlWriter.h"

#include <cmath>
#include <sstream>
#include <utility>

#include "ports/HostError.h"
#include "support/Files.h"
#include "support/NumberText.h"
#include "support/Text.h"

namespace orvanel {

XmlWriter::XmlWriter(XmlFormat format) : format_(std::move(format)) {
    pugi::xml_node declaration = document_.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "utf-8";
    pugi::xml_node root = document_.append_child(format_.rootElement.c_str());
    root.append_attribute("version") = format_.version;
    root.append_attribute("instrument") = "simulated";
}

void XmlWriter::Text(pugi::xml_node element, const char* attribute, const std::string& text) const {
    if (!support::IsPlainText(text)) Refuse(element, attribute, "holds a control character or is not UTF-8");
    element.append_attribute(attribute) = text.c_str();
}

void XmlWriter::Number(pugi::xml_node element, const char* attribute, double value) const {
    Finite(element, attribute, value);
}
void XmlWriter::Number(pugi::xml_node element, const char* attribute, float value) const {
    Finite(element, attribute, value);
}
template <class Value>
void XmlWriter::Finite(pugi::xml_node element, const char* attribute, Value value) const {
    if (!std::isfinite(value)) Refuse(element, attribute, "is not a finite number");
    element.append_attribute(attribute) = support::RoundTripText(value).c_str();
}

void XmlWriter::Whole(pugi::xml_node element, const char* attribute, int value) const {
    element.append_attribute(attribute) = value;
}

void XmlWriter::Refuse(pugi::xml_node element, const char* attribute, const std::string& why) const {
    throw ports::HostError(format_.notSavedNumber, std::string("\"") + attribute + "\" of element \"" + element.name() +
                                                       "\" " + why + ", so " + format_.what + " cannot be saved");
}

void XmlWriter::Save(const std::string& path, const support::Disk& disk) const {
    std::ostringstream text;
    document_.save(text, "  ", pugi::format_indent, pugi::encoding_utf8);
    try {
        support::WriteWholeFile(path, std::move(text).str(), disk);
    } catch (const support::FileError& error) {
        throw ports::HostError(format_.notSavedNumber, error.what());
    }
}

}  // namespace orvanel
