// Decodes bytes from printable ASCII: one character for each of the most frequent byte values, two for the others. The
// text is small, compresses as well as the bytes, since it keeps their order, and decodes fast. build.mjs encodes it.

/** The printable characters that need no escape in a string literal. */
const characters = Array.from({ length: 95 }, (_, i) => String.fromCharCode(32 + i)).filter(
  (character) => !'"\\'.includes(character)
);
const prefixes = 2;
const singles = characters.length - prefixes;

/** The text for the byte value of a rank; the most frequent one has rank 0. */
export function textOfRank(rank) {
  if (rank < singles) return characters[prefixes + rank];
  const rest = rank - singles;
  return characters[Math.floor(rest / characters.length)] + characters[rest % characters.length];
}

/** Decodes a text to bytes; `order` lists all byte values by rank. */
export function bytesOf(text, order, size) {
  const indexes = new Uint8Array(128);
  characters.forEach((character, index) => (indexes[character.charCodeAt(0)] = index));
  const bytes = new Uint8Array(size);
  for (let at = 0, i = 0; at < size; at++, i++) {
    const index = indexes[text.charCodeAt(i)];
    const isPrefix = index < prefixes;
    if (isPrefix) i++;
    const rank = isPrefix
      ? singles + index * characters.length + indexes[text.charCodeAt(i)]
      : index - prefixes;
    bytes[at] = order[rank];
  }
  return bytes;
}
