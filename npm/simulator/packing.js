// Bytes as text: printable ASCII, one character for each of the most frequent bytes and two for the others. It is small,
// compresses as well as the bytes themselves, since it keeps their order, and is quickly read. build.mjs writes it.

/** Printable, and nothing that ends or escapes within quotation marks. */
const characters = Array.from({ length: 95 }, (_, i) => String.fromCharCode(32 + i)).filter(
  (character) => !'"\\'.includes(character)
);
const prefixes = 2;
const singles = characters.length - prefixes;

/** The text for the byte of a rank; the most frequent byte has rank 0. */
export function textOfRank(rank) {
  if (rank < singles) return characters[prefixes + rank];
  const rest = rank - singles;
  return characters[Math.floor(rest / characters.length)] + characters[rest % characters.length];
}

/** The bytes of a text; `order` has all bytes by their ranks. */
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
