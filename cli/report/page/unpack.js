// What the page holds packed: base64 of a raw deflate stream of JSON, in an element with the id.

async function unpacked(id) {
  const characters = atob(document.getElementById(id).textContent);
  const bytes = new Uint8Array(characters.length);
  for (let i = 0; i < bytes.length; i++) bytes[i] = characters.charCodeAt(i);
  const stream = new Blob([bytes]).stream().pipeThrough(new DecompressionStream("deflate-raw"));
  return new Response(stream).json();
}

function cannotUnpack(error) {
  const notice = document.createElement("p");
  notice.className = "notice";
  notice.textContent = `This browser cannot read the report in this page (${error.message}); ` +
    "one of 2023 or later can.";
  document.getElementById("main").replaceChildren(notice);
}
