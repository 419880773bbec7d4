"""A C++ source as tokens, with what the mutations need to know about each: its brackets' partners and
the function around it. Enough for sources that are formatted as this library's are."""
import re

TOKEN = re.compile(r'''
    (?P<skip>\s+ | //[^\n]* | /\*.*?\*/ | ^[ \t]*\#(?:\\\n|[^\n])*)
  | (?P<text>"(?:\\.|[^"\\])*" | '(?:\\.|[^'\\])*')
  | (?P<name>~?[A-Za-z_]\w*(?:::~?[A-Za-z_]\w*)*)
  | (?P<number>0x[0-9a-fA-F]+U? | (?:\d+\.?\d*|\.\d+)(?:e[+-]?\d+)?[fU]?)
  | (?P<mark><<=|>>=|\.\.\.|->|\+\+|--|<<|>>|[<>=!+*/%&|^-]=|&&|\|\||::|.)
''', re.X | re.S | re.M)
OPEN, CLOSE = '([{', ')]}'


class Token:
    def __init__(self, match):
        self.kind, self.text = match.lastgroup, match.group()
        self.start, self.end = match.span()
        self.partner = self.function = self.bracket = None


class Source:
    def __init__(self, path, text):
        self.path, self.text = path, text
        self.tokens = [Token(m) for m in TOKEN.finditer(text) if m.lastgroup != 'skip']
        self.find_structure()

    def stands_apart(self, token):
        """Whether there is space on both sides, as there is around an operator of two operands."""
        return self.text[token.start - 1].isspace() and self.text[token.end].isspace()

    def find_structure(self):
        """Brackets, those of templates among them, and the functions: a function is what a brace
        opens after a parameter list."""
        function, head, stack = None, 0, []
        for i, token in enumerate(self.tokens):
            token.function = function
            token.bracket = self.tokens[stack[-1][0]].text if stack else None
            if token.text in OPEN or token.text == '<' and not self.stands_apart(token):
                outer = function
                if token.text == '{' and function is None:
                    function = self.function_of(self.tokens[head:i])
                stack.append((i, outer))
            elif stack and (token.text in CLOSE or token.text == '>' and not self.stands_apart(token)
                            and self.tokens[stack[-1][0]].text == '<'):
                opening, function = stack.pop()
                token.partner, self.tokens[opening].partner = opening, i
            if token.text in ';{}':
                head = i + 1

    @staticmethod
    def function_of(head):
        """Name and type of the function whose body follows, or nothing."""
        texts = [token.text for token in head]
        if '(' not in texts or '=' in texts or texts[0] == 'namespace':
            return None
        at = texts.index('(') - 1
        return texts[at], texts[at - 1]

    def pieces(self, first, last, marks):
        """Spans of tokens between the marks at the top level of tokens first to last - 1."""
        begin, i = first, first
        while i < last:
            token = self.tokens[i]
            if token.text in OPEN + '<' and token.partner:
                i = token.partner
            elif token.kind == 'mark' and token.text in marks:
                yield begin, i
                begin = i + 1
            i += 1
        yield begin, last

    def span(self, first, last):
        """Where the text of tokens first to last - 1 begins and ends."""
        return self.tokens[first].start, self.tokens[last - 1].end

    def piece(self, first, last):
        start, end = self.span(first, last)
        return self.text[start:end]

    def start_of_operand(self, i):
        """The first token of the operand that ends with token i: a name, a number or what is in brackets, with
        what it is called with or an element of."""
        first = self.tokens[i].partner if self.tokens[i].text in CLOSE + '>' and self.tokens[i].partner else i
        before = self.tokens[first - 1]
        if before.text in ('.', '->'):
            return self.start_of_operand(first - 2)
        goes_on = self.tokens[first].text in OPEN + '<' and (before.kind == 'name' and before.text != 'return' or
                                                            before.text in (')', ']', '>') and before.partner)
        return self.start_of_operand(first - 1) if goes_on else first

    def operand_before(self, i):
        return self.piece(self.start_of_operand(i - 1), i)

    def operand_after(self, i):
        last = (self.tokens[i + 1].text == '(' and self.tokens[i + 1].partner) or i + 1
        while self.tokens[last + 1].text in ('.', '->') or self.tokens[last + 1].text in ('(', '['):
            last = self.tokens[last + 1].partner or last + 2
        return self.piece(i + 1, last + 1)

    def place_of(self, i):
        """What token i is compared with, stored in, an argument or an element of."""
        if self.tokens[i - 1].text in '-!~' and not self.stands_apart(self.tokens[i - 1]):
            i -= 1
        before, opening = self.tokens[i - 1], i - 1
        if before.text in ('.', '->') or before.kind == 'mark' and self.stands_apart(before):
            return self.operand_before(i - 1)
        if before.text in ';}':
            return self.operand_after(i - 1)
        # Lists within a list are elements of what the outer one is stored in.
        while opening > 0 and (self.tokens[opening].text not in OPEN or (self.tokens[opening].partner or 0) < i
                               or self.tokens[opening].text == '{' and self.tokens[opening - 1].text in ',{('):
            opening -= 1
        if self.tokens[opening - 1].text == '=':
            opening -= 1
        return self.operand_before(opening) if opening else ''
