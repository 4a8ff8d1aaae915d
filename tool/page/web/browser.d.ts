/** What browsers have and the type checker does not know yet. */
declare class DecompressionStream implements GenericTransformStream {
  constructor(format: "gzip" | "deflate" | "deflate-raw");
  readonly readable: ReadableStream<Uint8Array>;
  readonly writable: WritableStream<BufferSource>;
}
