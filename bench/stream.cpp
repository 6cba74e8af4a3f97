/**
 * What the text of a group costs in the stream alone: a dump is recorded, and the same labels,
 * numbers and flushes are inserted again.
 */
#include "filters.h"
#include "operations.h"
#include "peers.h"

#include <cctype>
#include <ostream>
#include <set>
#include <sstream>
#include <streambuf>

namespace bench {

namespace {

/** Keeps the text and the places where it was flushed. */
struct Recorder : std::streambuf {
    std::string text;
    std::set<std::size_t> flushes;

private:
    int_type overflow(int_type c) override
    {
        text += traits_type::to_char_type(c);
        return c;
    }
    std::streamsize xsputn(const char* more, std::streamsize size) override
    {
        text.append(more, static_cast<std::size_t>(size));
        return size;
    }
    int sync() override
    {
        flushes.insert(text.size());
        return 0;
    }
};

/** A label, followed by a number or by the end of a line that flushes, or by neither. */
struct Piece {
    const char* label;
    unsigned number;
    bool numbered;
    bool flushed;
};

struct Pieces {
    std::set<std::string> labels;
    std::vector<Piece> all;
};

bool isDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
bool isLetter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; }

std::shared_ptr<Pieces> piecesOf(const Rules& rules)
{
    Recorder recorder;
    std::ostream out(&recorder);
    out << groupOf(rules);
    const std::string& text = recorder.text;
    auto pieces = std::make_shared<Pieces>();
    for (std::size_t at = 0; at < text.size();) {
        // A digit after a letter belongs to a name.
        std::size_t end = at;
        while (text[end] != '\n' && !(isDigit(text[end]) && !isLetter(text[end - 1])))
            ++end;
        Piece piece{};
        std::string label = text.substr(at, end - at);
        at = end;
        if (isDigit(text[at])) {
            piece.numbered = true;
            for (; isDigit(text[at]); ++at)
                piece.number = piece.number * 10 + static_cast<unsigned>(text[at] - '0');
        } else if (++at; recorder.flushes.count(at) != 0) {
            piece.flushed = true;
        } else {
            label += '\n';
        }
        piece.label = pieces->labels.insert(std::move(label)).first->c_str();
        pieces->all.push_back(piece);
    }
    return pieces;
}

std::ostringstream insert(const Pieces& pieces)
{
    std::ostringstream out;
    for (const Piece& piece : pieces.all) {
        out << piece.label;
        if (piece.numbered)
            out << piece.number;
        if (piece.flushed)
            out << std::endl;
    }
    return out;
}

Operation text(const Rules& rules)
{
    return making(rules.size(), [pieces = piecesOf(rules)] { return insert(*pieces); });
}

} // namespace

Descriptions streamOperations() { return {{"stream", "text", text}}; }

std::string streamedTextOf(const Rules& rules) { return insert(*piecesOf(rules)).str(); }

} // namespace bench
