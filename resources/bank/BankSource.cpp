#include "resources/bank/BankSource.h"

#include "resources/bank/ParameterUnits.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <set>

namespace bank
{
namespace
{
struct KindRow
{
    std::string_view name;
    Kind kind;
};
constexpr KindRow kinds[] = {
    { "bass", Kind::bass },         { "lead", Kind::lead }, { "pad", Kind::pad },
    { "pluck", Kind::pluck },       { "keys", Kind::keys }, { "effect", Kind::effect },
    { "sequence", Kind::sequence },
};

std::string_view trimmed (std::string_view text)
{
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of (blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr (first, text.find_last_not_of (blanks) - first + 1);
}

// Reads the source line by line into programs; the defaults block comes first and each program
// begins as a copy of it.
class Reader
{
public:
    explicit Reader (std::istream& bankText) : source (bankText) {}

    std::vector<SourceProgram> read ()
    {
        std::string line;
        while (std::getline (source, line))
        {
            ++lineNumber;
            const std::string_view text = trimmed (line);
            if (text.empty () || text.starts_with ('#'))
                continue;
            if (text.starts_with ('['))
                startBlock (text);
            else
                readEntry (text);
        }
        finishProgram ();
        if (programs.size () != programCount)
            fail ("the bank has " + std::to_string (programs.size ()) + " programs, not 128");
        return std::move (programs);
    }

private:
    [[noreturn]] void fail (const std::string& why) const
    {
        throw SourceError ("line " + std::to_string (lineNumber) + ": " + why + ".");
    }

    void startBlock (std::string_view text)
    {
        finishProgram ();
        if (!text.ends_with (']'))
            fail ("a block's head ends with ]");
        text = trimmed (text.substr (1, text.size () - 2));
        if (text == "defaults")
            return;
        const auto blank = text.find (' ');
        std::size_t number = 0;
        const auto digits = text.substr (0, blank);
        const auto [end, error] = std::from_chars (digits.data (), digits.data () + digits.size (), number);
        if (blank == std::string_view::npos || error != std::errc () ||
            end != digits.data () + digits.size ())
            fail ("a block's head reads [number name]");
        if (number != programs.size ())
            fail ("program " + std::to_string (programs.size ()) + " comes next");
        const std::string name (trimmed (text.substr (blank)));
        if (name.empty () || name.size () > ProgramRecord::nameBytes)
            fail ("a name has 1 to 24 characters");
        if (!names.insert (name).second)
            fail ("the name \"" + name + "\" is already taken");
        current = defaults;
        current.record.setName (name);
        inProgram = true;
        hasKind = false;
    }

    void readEntry (std::string_view text)
    {
        const auto equals = text.find ('=');
        if (equals == std::string_view::npos)
            fail ("a line reads parameter = value");
        const std::string_view key = trimmed (text.substr (0, equals));
        const std::string_view value = trimmed (text.substr (equals + 1));
        SourceProgram& target = inProgram ? current : defaults;
        if (key == "about")
            target.about = value;
        else if (key == "kind")
            readKind (value);
        else
            readParameter (target, key, value);
    }

    void readKind (std::string_view value)
    {
        const auto row = std::ranges::find (kinds, value, &KindRow::name);
        if (row == std::end (kinds))
            fail ("there is no kind \"" + std::string (value) + "\"");
        current.kind = row->kind;
        hasKind = true;
    }

    void readParameter (SourceProgram& target, std::string_view key, std::string_view value)
    {
        const auto parameter = parameterNamed (key);
        if (!parameter)
            fail ("there is no parameter \"" + std::string (key) + "\"");
        const auto position = knobPosition (*parameter, value);
        if (!position)
            fail (std::string (key) + " cannot be \"" + std::string (value) + "\"");
        target.record.values[static_cast<std::size_t> (*parameter)] = *position;
    }

    void finishProgram ()
    {
        if (!inProgram)
            return;
        if (!hasKind || current.about.empty ())
            fail ("\"" + current.name () + "\" lacks its kind or its description");
        programs.push_back (current);
        inProgram = false;
    }

    std::istream& source;
    int lineNumber = 0;
    SourceProgram defaults;
    SourceProgram current;
    bool inProgram = false;
    bool hasKind = false;
    std::set<std::string> names;
    std::vector<SourceProgram> programs;
};
}

std::string_view kindName (Kind kind)
{
    return std::ranges::find (kinds, kind, &KindRow::kind)->name;
}

std::vector<SourceProgram> readBankSource (std::istream& source)
{
    return Reader (source).read ();
}

std::vector<char> bankBytes (const std::vector<SourceProgram>& programs)
{
    // A record in memory is a record of the file: its values are stored as this machine holds them.
    static_assert (std::endian::native == std::endian::little);
    std::vector<char> bytes;
    for (const SourceProgram& program : programs)
    {
        const auto* first = reinterpret_cast<const char*> (&program.record);
        bytes.insert (bytes.end (), first, first + sizeof (program.record));
    }
    return bytes;
}
}
