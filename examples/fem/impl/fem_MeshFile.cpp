#include "fem_MeshFile.h"

#include "nex_TextException.h"
#include "uti_SystemException.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <set>
#include <string>

namespace
{

// Element types of the format, and their numbers of nodes, as far as a mesh of tetrahedra can hold them.
constexpr int TETRAHEDRON = 4;
struct ElementType
{
    int type;
    int nodes;
};
constexpr std::array<ElementType, 4> KNOWN_TYPES{{{15, 1}, {1, 2}, {2, 3}, {TETRAHEDRON, 4}}};

constexpr int MAX_TAGS = 64;

bool IsBlank(char character)
{
    return character == ' ' || character == '\t' || character == '\r';
}

std::string ReadText(const cow_String& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.AsCharPtr(), "rb"), &std::fclose);
    if (file == nullptr) {
        uti_SystemException("fopen", errno, path).Throw("examples/fem/impl/fem_MeshFile", __LINE__);
    }
    std::string text;
    std::array<char, 65536> block;
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
        text.append(block.data(), count);
    }
    if (std::ferror(file.get()) != 0) {
        uti_SystemException("fread", errno, path).Throw("examples/fem/impl/fem_MeshFile", __LINE__);
    }
    return text;
}

} // namespace

/// Reads the sections of a mesh file line by line.
class fem_MeshParser
{
public:
    fem_MeshParser(std::string_view text, const cow_String& name) : m_rest(text), m_name(name) {}

    fem_MeshFile Parse();

private:
    [[noreturn]] void Fail(const cow_String& what) const;
    /// Goes to the next line; false at the end of the text.
    bool NextLine();
    void RequireLine(const char* section);
    void RequireEnd(const char* section);
    /// The next number on the line.
    template <class Number> Number Take(const char* what);
    int TakeLabel(const char* what);
    void RequireLineEnd();

    void ReadFormat();
    void ReadNodes();
    void ReadElements();
    void ReadElement();
    void SkipSection(std::string_view name);
    /// By label, which each may have once.
    template <class Labelled> void Sort(std::vector<Labelled>& labelled, const char* kind) const;

    std::string_view m_rest; // after the present line
    std::string_view m_line; // what is left of the present line
    const cow_String& m_name;
    int m_lineNumber = 0;
    bool m_hasFormat = false;
    bool m_hasNodes = false;
    fem_MeshFile m_file;
};

void fem_MeshParser::Fail(const cow_String& what) const
{
    nex_TextException(m_name + ":" + cow_String(m_lineNumber) + ": " + what)
        .Throw("examples/fem/impl/fem_MeshFile", __LINE__);
}

bool fem_MeshParser::NextLine()
{
    while (!m_rest.empty()) {
        const std::size_t end = m_rest.find('\n');
        m_line = m_rest.substr(0, end);
        m_rest.remove_prefix(end == std::string_view::npos ? m_rest.size() : end + 1);
        ++m_lineNumber;
        while (!m_line.empty() && IsBlank(m_line.back())) {
            m_line.remove_suffix(1);
        }
        if (!m_line.empty()) {
            return true;
        }
    }
    return false;
}

void fem_MeshParser::RequireLine(const char* section)
{
    if (!NextLine()) {
        Fail(cow_String("the file ends inside ") + section);
    }
}

void fem_MeshParser::RequireEnd(const char* section)
{
    RequireLine(section);
    const std::string expected = std::string("$End") + (section + 1);
    if (m_line != expected) {
        Fail(cow_String(expected) + " expected");
    }
}

template <class Number> Number fem_MeshParser::Take(const char* what)
{
    while (!m_line.empty() && IsBlank(m_line.front())) {
        m_line.remove_prefix(1);
    }
    Number number{};
    const auto [end, error] = std::from_chars(m_line.data(), m_line.data() + m_line.size(), number);
    const auto length = static_cast<std::size_t>(end - m_line.data());
    if (error != std::errc() || (length < m_line.size() && !IsBlank(m_line[length]))) {
        Fail(cow_String(what) + " expected");
    }
    m_line.remove_prefix(length);
    return number;
}

int fem_MeshParser::TakeLabel(const char* what)
{
    const auto label = Take<int>(what);
    if (label < 1) {
        Fail(cow_String(what) + " above 0 expected");
    }
    return label;
}

void fem_MeshParser::RequireLineEnd()
{
    if (!m_line.empty()) {
        Fail("more on the line than expected");
    }
}

fem_MeshFile fem_MeshParser::Parse()
{
    bool hasElements = false;
    while (NextLine()) {
        if (m_line == "$MeshFormat") {
            ReadFormat();
        } else if (m_line == "$Nodes") {
            ReadNodes();
        } else if (m_line == "$Elements") {
            ReadElements();
            hasElements = true;
        } else if (m_line.front() == '$') {
            SkipSection(m_line.substr(1));
        } else {
            Fail("a section expected");
        }
    }
    if (!hasElements) {
        Fail("no $Elements in the file");
    }
    return std::move(m_file);
}

void fem_MeshParser::ReadFormat()
{
    RequireLine("$MeshFormat");
    const auto version = Take<double>("a version");
    if (version < 2.0 || version >= 3.0) {
        Fail("only version 2 of the format can be read");
    }
    if (Take<int>("a file type") != 0) {
        Fail("only the ASCII form of the format can be read");
    }
    RequireEnd("$MeshFormat");
    m_hasFormat = true;
}

void fem_MeshParser::ReadNodes()
{
    if (!m_hasFormat || m_hasNodes) {
        Fail(m_hasNodes ? "a second $Nodes" : "$MeshFormat expected before $Nodes");
    }
    m_hasNodes = true;
    RequireLine("$Nodes");
    const auto count = Take<int>("a number of nodes");
    RequireLineEnd();
    for (int i = 0; i < count; ++i) {
        RequireLine("$Nodes");
        fem_MeshFile::Node node{};
        node.label = TakeLabel("a node label");
        for (double& coordinate : node.position) {
            coordinate = Take<double>("a coordinate");
            if (!(std::abs(coordinate) <= std::numeric_limits<float>::max())) {
                Fail("a coordinate that is no finite number of single precision");
            }
        }
        RequireLineEnd();
        m_file.m_nodes.push_back(node);
    }
    RequireEnd("$Nodes");
    Sort(m_file.m_nodes, "node");
}

template <class Labelled> void fem_MeshParser::Sort(std::vector<Labelled>& labelled, const char* kind) const
{
    std::sort(labelled.begin(), labelled.end(), [](const auto& a, const auto& b) { return a.label < b.label; });
    const auto twice = std::adjacent_find(labelled.begin(), labelled.end(),
                                          [](const auto& a, const auto& b) { return a.label == b.label; });
    if (twice != labelled.end()) {
        Fail(cow_String(kind) + " " + cow_String(twice->label) + " is there twice");
    }
}

void fem_MeshParser::ReadElements()
{
    if (!m_hasNodes) {
        Fail("$Nodes expected before $Elements");
    }
    RequireLine("$Elements");
    const auto count = Take<int>("a number of elements");
    RequireLineEnd();
    for (int i = 0; i < count; ++i) {
        RequireLine("$Elements");
        ReadElement();
    }
    RequireEnd("$Elements");
    Sort(m_file.m_elements, "element");
}

void fem_MeshParser::ReadElement()
{
    fem_MeshFile::Element element{};
    element.label = TakeLabel("an element label");
    const auto type = Take<int>("an element type");
    const auto known = std::find_if(KNOWN_TYPES.begin(), KNOWN_TYPES.end(),
                                    [type](const ElementType& candidate) { return candidate.type == type; });
    if (known == KNOWN_TYPES.end()) {
        Fail("elements of type " + cow_String(type) + " cannot be read");
    }
    const auto tags = Take<int>("a number of tags");
    if (tags < 2 || tags > MAX_TAGS) {
        Fail("an element needs 2 to " + cow_String(MAX_TAGS) + " tags");
    }
    for (int tag = 0; tag < tags; ++tag) {
        const auto value = Take<int>("a tag");
        element.body = tag == 1 ? value : element.body;
    }
    for (int corner = 0; corner < known->nodes; ++corner) {
        const auto label = Take<int>("a node label");
        const bool isKnown =
            std::binary_search(m_file.m_nodes.begin(), m_file.m_nodes.end(), fem_MeshFile::Node{label, {}},
                               [](const auto& a, const auto& b) { return a.label < b.label; });
        if (!isKnown) {
            Fail("there is no node " + cow_String(label));
        }
        element.nodes[static_cast<std::size_t>(corner)] = label;
    }
    RequireLineEnd();
    if (type == TETRAHEDRON) {
        if (element.body <= fem_MeshFile::ALL_BODIES) {
            Fail("a body with a positive number expected");
        }
        m_file.m_elements.push_back(element);
    }
}

void fem_MeshParser::SkipSection(std::string_view name)
{
    const std::string end = "$End" + std::string(name);
    const cow_String section("$" + std::string(name));
    do {
        RequireLine(section.AsCharPtr());
    } while (m_line != end);
}

fem_MeshFile fem_MeshFile::Read(const cow_String& path)
{
    return Parse(ReadText(path), path);
}

fem_MeshFile fem_MeshFile::Parse(std::string_view text, const cow_String& name)
{
    return fem_MeshParser(text, name).Parse();
}

std::vector<int> fem_MeshFile::Bodies() const
{
    std::set<int> bodies;
    for (const Element& element : m_elements) {
        bodies.insert(element.body);
    }
    return {bodies.begin(), bodies.end()};
}

std::unique_ptr<fem_Mesh> fem_MeshFile::MeshOfBody(int body) const
{
    std::set<int> used;
    for (const Element& element : m_elements) {
        if (body == ALL_BODIES || element.body == body) {
            used.insert(element.nodes.begin(), element.nodes.end());
        }
    }
    auto mesh = std::make_unique<fem_Mesh>();
    bool isWhole = true;
    for (const Node& node : m_nodes) {
        if (used.contains(node.label)) {
            isWhole = mesh->AddNode(node.label, node.position) && isWhole;
        }
    }
    for (const Element& element : m_elements) {
        if (body == ALL_BODIES || element.body == body) {
            isWhole = mesh->AddElement(element.label, element.nodes) && isWhole;
        }
    }
    if (!isWhole) {
        throw std::bad_alloc(); // labels ascend and nodes are known: nothing else is refused
    }
    return mesh;
}
