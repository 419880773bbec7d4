"""What is changed in a source: faults that a hand or a compiler might make. Each function yields changes
(start, end, replacement, mutation, operand): a span of its text, and two words for what is done to what, which
stay the same when the lines around it change. All but numbers and signs are changed inside functions alone."""
import re
import struct

OPERATORS = {
    '<': ['<=', '>='], '>': ['>=', '<='], '<=': ['<', '>'], '>=': ['>', '<'], '==': ['!='], '!=': ['=='],
    '+': ['-'], '-': ['+'], '*': ['/'], '/': ['*'], '+=': ['-='], '-=': ['+='], '&&': ['||'], '||': ['&&'],
    '&': ['|'], '|': ['&'], '^': ['|'], '<<': ['>>'], '>>': ['<<'], '%': ['/'],
}
# The decimals, which are not the singles meant; and names that are easily taken for one another.
NAMES = {'tolerance': '1e-6', 'huge': '1e20'}
for a, b in (pair.split() for pair in ('sine cosine', 'low high', 'unpack_low unpack_high', 'splat_low splat_high', 'lo hi',
             'near far', 'positive_part negative_part', 'minimum maximum', 'lower raise', 'min max',
             'enter leave', 'top bottom', 'start end', 'true false', '_mm_min_pd _mm_max_pd',
             '_mm_min_sd _mm_max_sd', '_mm_add_pd _mm_sub_pd', '_mm_unpacklo_pd _mm_unpackhi_pd',
             '_mm_storel_pi _mm_storeh_pi')):
    NAMES |= {a: b, b: a, 'kx::' + a: 'kx::' + b, 'kx::' + b: 'kx::' + a}
MEMBERS = {'x': 'y', 'y': 'x', 'z': 'y', 'w': 'z', 'a': 'b', 'b': 'a', 'c': 'b', 'd': 'c'}
# Calls that are dropped, so that their argument stays as it is.
DROPPED = {'round_to_single', 'magnitude', 'negate', 'swap_lanes', 'sign'}
# A declaration of doubles, or pairs of them, which a mutation rounds.
DOUBLES = {'double', 'Double2', 'Double4', '__m128d'}
ROUNDED_ALREADY = re.compile(r'(round_to_single|widen)\(')
COMPUTES = re.compile(r' [-+*/] |(square_root|sine|arctangent|tive_part|_pd)\(')
COMMUTATIVE = re.compile(r'_mm_(add|mul|and|or|xor)_')
NO_CALL = {'if', 'for', 'while', 'switch', 'return', 'sizeof', 'catch'}
NO_STATEMENT = {'return', 'break', 'continue', 'using', 'typedef', 'struct', 'enum', 'constexpr', 'const',
                'static', 'float', 'double', 'int', 'bool', 'auto', 'case', 'default', 'public', 'private',
                'if', 'for', 'while', 'switch', 'else'}


def operators(source):
    for i, token in enumerate(source.tokens):
        if token.function and token.text in OPERATORS and source.stands_apart(token):
            for other in OPERATORS[token.text]:
                yield token.start, token.end, other, f'{token.text} to {other}', source.operand_before(i)


def signs(source):
    for i, token in enumerate(source.tokens):
        if token.text in ('-', '!', '~') and not source.text[token.end].isspace():
            yield token.start, token.end, '', f'no {token.text}', source.operand_after(i)


def names(source):
    for i, (before, token, after) in enumerate(zip(source.tokens, source.tokens[1:], source.tokens[2:]), 1):
        if not token.function or token.kind != 'name' or before.kind == 'name' and before.text != 'return':
            continue
        where = source.piece(i + 2, after.partner) if after.text == '(' else source.place_of(i)
        if token.text in NAMES:
            yield token.start, token.end, NAMES[token.text], f'{token.text} to {NAMES[token.text]}', where
        elif before.text in ('.', '->') and token.text in MEMBERS:
            yield token.start, token.end, MEMBERS[token.text], f'{token.text} to {MEMBERS[token.text]}', where
        if token.text.split('::')[-1] in DROPPED and after.text == '(':
            yield token.start, token.end, '', f'no {token.text}', where


def next_single(value):
    """The next one up; of 0, which has no neighbour worth the name, it is 1."""
    return struct.unpack('f', struct.pack('I', struct.unpack('I', struct.pack('f', value))[0] + 1))[0] \
        if value else 1.0


def other_numbers(text):
    if text.startswith('0x'):
        digits = text.rstrip('U')
        return [hex(int(digits, 16) ^ 1) + text[len(digits):]]
    if not re.search('[.ef]', text):
        digits = text.rstrip('U')
        return [str(int(digits) - 1 if int(digits) else 1) + text[len(digits):]]
    value, suffix = float(text.rstrip('f')), 'f' if text.endswith('f') else ''
    single = struct.unpack('f', struct.pack('f', value))[0]
    # A double that no single holds becomes one; others become the next single, and zeros negative.
    other = single if not suffix and single != value else next_single(single)
    return [repr(other) + suffix] + ([] if value else ['-' + text])


def numbers(source):
    for i, token in enumerate(source.tokens):
        if token.kind == 'number' and not is_size(source, i):
            compared = source.tokens[i - 1].text in ('<', '>', '<=', '>=', '==', '!=')
            for other in other_numbers(token.text):
                if not (compared and other.startswith('-')):
                    yield token.start, token.end, other, f'{token.text} to {other}', source.place_of(i)


def is_size(source, i):
    """Whether the number is the size in the declaration of an array."""
    if source.tokens[i - 1].text != '[':
        return False
    i -= 2
    while source.tokens[i].text == ']':
        i = source.tokens[i].partner - 1
    before = source.tokens[i - 1]
    return source.tokens[i].text == ')' or before.text == '*' or \
        before.kind == 'name' and before.text != 'return'


def added_roundings(source):
    """Of what is computed and declared as double, or what a function returns as such."""
    for i, token in enumerate(source.tokens):
        if not token.function:
            continue
        expressions = []
        if token.text in DOUBLES and source.tokens[i + 1].kind == 'name':
            end = next(k for k in range(i, len(source.tokens)) if source.tokens[k].text == ';')
            for first, last in source.pieces(i + 1, end, ','):
                if last - first > 2 and source.tokens[first + 1].text == '=':
                    expressions.append((first + 2, last, source.tokens[first].text))
        elif token.text == 'return' and token.function[1] in DOUBLES:
            end = next(k for k in range(i, len(source.tokens)) if source.tokens[k].text == ';')
            expressions.append((i + 1, end, 'return'))
        for first, last, name in expressions:
            text = source.piece(first, last)
            done = ROUNDED_ALREADY.match(text) and source.tokens[first + 1].partner == last - 1
            if not done and COMPUTES.search(text) and text[0] != '{':
                yield *source.span(first, last), f'round_to_single({text})', 'rounded', name


def exchanged(source, one, other):
    """One piece of text in the other's place."""
    a, b = source.piece(*one), source.piece(*other)
    if a != b:
        start, end = source.tokens[one[0]].start, source.tokens[other[1] - 1].end
        between = source.text[source.tokens[one[1] - 1].end:source.tokens[other[0]].start]
        indices = between == ']['
        yield start, end, b + between + a, 'exchanged', f'{"[" * indices}{source.text[start:end]}{"]" * indices}'


def arguments(source):
    """Neighbouring arguments and elements of lists, and the two indices of an element."""
    literal = re.compile(r'-?[\d.]+(e[+-]?\d+)?[fU]?$')
    for i, token in enumerate(source.tokens):
        before = source.tokens[i - 1]
        if not token.function or not token.partner or token.partner < i:
            continue
        if token.text == '[' and source.tokens[token.partner + 1].text == '[':
            second = token.partner + 1
            if not is_size(source, i + 1):
                yield from exchanged(source, (i + 1, token.partner),
                                     (second + 1, source.tokens[second].partner))
        call = token.text == '(' and before.kind == 'name' and before.text not in NO_CALL \
            and not COMMUTATIVE.match(before.text)
        if (call or token.text == '{') and token.partner - i > 1:
            if any(t.text == ';' for t in source.tokens[i:token.partner]):
                continue
            pieces = [p for p in source.pieces(i + 1, token.partner, ',') if p[1] > p[0]]
            for one, other in zip(pieces, pieces[1:]):
                if not (literal.match(source.piece(*one)) and literal.match(source.piece(*other))):
                    yield from exchanged(source, one, other)


def orders(source):
    """The second and the third term of a sum, and factor of a product, and so on: another rounding."""
    edges = {',', ';', '=', '?', ':', '<', '>', '<=', '>=', '==', '!=', '&&', '||', '+=', '-=', '|', '&'}
    bounds = [i for i, t in enumerate(source.tokens) if t.text in '([{;' and t.function]
    for i in bounds:
        token = source.tokens[i]
        end = token.partner if token.text != ';' else next(
            (k for k in range(i + 1, len(source.tokens)) if source.tokens[k].text in (';', '}')), None)
        if not end:
            continue
        for first, last in source.pieces(i + 1, end, edges):
            if last > first and source.tokens[first].text == 'return':
                first += 1
            yield from chain(source, first, last, '+-')
            for begin, stop in source.pieces(first, last, '+-'):
                yield from chain(source, begin, stop, '*/')


def chain(source, first, last, marks):
    """Each operator with what follows it changes places with the next."""
    pieces = list(source.pieces(first, last, marks))
    for one, other in zip(pieces[1:], pieces[2:]):
        if one[1] > one[0] and other[1] > other[0] and source.stands_apart(source.tokens[one[0] - 1]) \
                and source.stands_apart(source.tokens[other[0] - 1]):
            yield from exchanged(source, (one[0] - 1, one[1]), (other[0] - 1, other[1]))


def statements(source):
    """Left out: assignments and calls whose result is not used."""
    for i, (token, first) in enumerate(zip(source.tokens, source.tokens[1:])):
        if not token.function or token.text not in (';', '{', '}', ':') or first.bracket != '{' \
                or first.kind not in ('name', 'mark') or first.text in NO_STATEMENT:
            continue
        declares = first.kind == 'name' and source.tokens[i + 2].kind == 'name'
        end = next(k for k in range(i + 1, len(source.tokens)) if source.tokens[k].text in ';{}')
        if source.tokens[end].text == ';' and end > i + 1 and not declares:
            yield *source.span(i + 1, end), '', 'left out', source.piece(i + 1, end)


def conditions(source):
    for i, token in enumerate(source.tokens):
        if token.function and token.text == 'if':
            opening = i + 1 + (source.tokens[i + 1].text == 'constexpr')
            inside = opening + 1, source.tokens[opening].partner
            for other in ('true', 'false'):
                yield *source.span(*inside), other, 'always' if other == 'true' else 'never', source.piece(*inside)
        if token.function and token.text == '?' and source.tokens[i - 1].kind == 'name' \
                and source.tokens[i - 2].text in ('=', '(', '{', ',', 'return'):
            yield source.tokens[i - 1].start, source.tokens[i - 1].start, '!', 'not', source.tokens[i - 1].text


ALL = (operators, signs, names, numbers, added_roundings, arguments, orders, statements, conditions)
