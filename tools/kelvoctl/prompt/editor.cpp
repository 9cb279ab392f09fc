// Lines typed on a terminal, with history and completion.
#include <histedit.h>
#include <unistd.h>

#include <cerrno>
#include <clocale>
#include <cstdio>
#include <cwchar>

#include "tools/kelvoctl/common/signals.h"
#include "tools/kelvoctl/common/words.h"
#include "tools/kelvoctl/prompt/history_file.h"
#include "tools/kelvoctl/prompt/line_reader.h"
#include "tools/kelvoctl/prompt/offers.h"

namespace kelvo::ctl {
namespace {

constexpr int lines_kept = 1000;

/// Set when a signal ends the line that is being typed.
bool interrupted = false;

const char* prompt(EditLine* /*editor*/) { return prompt_text; }

/// One letter, which has one byte or more. Signals come in while it waits, and only then.
int get_letter(EditLine* /*editor*/, wchar_t* letter) {
  std::mbstate_t state{};
  while (true) {
    if (!wait_for_input(STDIN_FILENO)) {
      interrupted = true;
      return -1;
    }
    char byte = 0;
    if (read(STDIN_FILENO, &byte, 1) != 1) return 0;
    const std::size_t length = std::mbrtowc(letter, &byte, 1, &state);
    if (length == static_cast<std::size_t>(-2)) continue;  // there is more of it
    if (length == static_cast<std::size_t>(-1)) *letter = L'?';
    return 1;
  }
}

void show(const std::vector<std::string>& words) {
  std::string line = "\n";
  for (const std::string& word : words) line += word + "  ";
  std::fprintf(stderr, "%s\n", line.c_str());
}

unsigned char complete(EditLine* editor, int /*key*/) {
  const LineInfo* const info = el_line(editor);
  const std::string typed(info->buffer, info->cursor);
  std::vector<std::string> words;
  try {
    words = words_of(typed);
  } catch (const Failure&) {
    return CC_ERROR;  // within quotes
  }
  std::string begun;
  if (!typed.empty() && typed.back() != ' ' && !words.empty()) {
    begun = words.back();
    words.pop_back();
  }
  const std::vector<std::string> found = offers(words, begun);
  if (found.empty()) return CC_ERROR;
  std::string text = common_beginning(found).substr(begun.size());
  if (found.size() == 1 && !found.front().ends_with('/')) text += ' ';
  if (!text.empty()) return el_insertstr(editor, text.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
  show(found);
  return CC_REDISPLAY;
}

class Editor : public LineReader {
 public:
  Editor() : file_(history_file()), history_(history_init()) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    HistEvent event{};
    history(history_, &event, H_SETSIZE, lines_kept);
    history(history_, &event, H_SETUNIQUE, 1);
    if (!file_.empty()) history(history_, &event, H_LOAD, file_.c_str());
    editor_ = el_init("kelvoctl", stdin, stderr, stderr);
    el_set(editor_, EL_PROMPT, prompt);
    el_set(editor_, EL_EDITOR, "emacs");
    el_set(editor_, EL_HIST, history, history_);
    el_set(editor_, EL_GETCFN, get_letter);
    el_set(editor_, EL_ADDFN, "complete", "completes a word", complete);
    el_set(editor_, EL_BIND, "^I", "complete", nullptr);
    el_set(editor_, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  }

  ~Editor() override {
    el_end(editor_);
    history_end(history_);
  }
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  std::optional<std::string> next() override {
    interrupted = false;
    int length = 0;
    // Before the prompt: what is typed behind it shall not meet a terminal that still edits lines itself.
    el_set(editor_, EL_PREP_TERM, 1);
    const char* const typed = el_gets(editor_, &length);
    if (interrupted) {
      el_reset(editor_);
      std::fputs("^C\n", stderr);
      throw Interrupted("interrupted");
    }
    if (typed == nullptr || length <= 0) {
      std::fputc('\n', stderr);
      return {};
    }
    std::string line(typed, static_cast<std::size_t>(length));
    remember(line);
    if (line.ends_with('\n')) line.pop_back();
    return line;
  }

 private:
  void remember(const std::string& line) {
    if (line.find_first_not_of(" \t\n") == std::string::npos) return;
    HistEvent event{};
    history(history_, &event, H_ENTER, line.c_str());
    if (!file_.empty()) history(history_, &event, H_SAVE, file_.c_str());
  }

  std::string file_;
  History* history_;
  EditLine* editor_ = nullptr;
};

}  // namespace

std::unique_ptr<LineReader> make_editor() { return std::make_unique<Editor>(); }

}  // namespace kelvo::ctl
