/* Why a request is not answered: what the client gets as its error. */

/** Codes of the protocol. */
export const INVALID_REQUEST = -32600;
export const INTERNAL_ERROR = -32603;
export const CANCELLED = -32800;

export class Refusal extends Error {
    override name = 'Refusal';

    constructor(
        readonly code: number,
        message: string,
    ) {
        super(message);
    }
}
